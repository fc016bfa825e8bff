#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The messages that ask for a controller's chassis, as XML (DMTF DSP0201, representation of CIM in XML) in the operation
// EnumerateInstances (DSP0200, CIM operations over HTTP). Nothing here speaks to a network.
namespace cim
{
// A CIM_Chassis, as far as it says what machine it is. Trimmed; placeholders such as "N/A" are left out.
struct Chassis
{
    std::string manufacturer;
    std::string model;
    std::string partNumber;
    std::string sku;
};

constexpr char kNamespace[] = "root/cimv2";
constexpr char kChassisClass[] = "CIM_Chassis";
constexpr char kOperation[] = "EnumerateInstances";

// Asks for these four properties of all chassis, also of those of derived classes.
std::string chassisRequest();

enum class AnswerKind
{
    Instances,
    Error,      // the operation failed; `errorCode` is a CIM status code (DSP0200, annex on status codes)
    Unreadable, // no such message
};

// Status codes that tell more than that the operation failed.
constexpr std::uint32_t kAccessDenied = 2;
constexpr std::uint32_t kInvalidNamespace = 3;
constexpr std::uint32_t kInvalidClass = 5;
constexpr std::uint32_t kNotSupported = 7;

struct Answer
{
    AnswerKind kind = AnswerKind::Unreadable;
    std::vector<Chassis> chassis;
    std::uint32_t errorCode = 0; // 0: the error has no code that can be read
    std::string text;            // the error's description, or why the answer cannot be read
};

// Reads the answer; of more than 256 chassis the first ones. Document type declarations, and so entities, are refused,
// as is a nesting that no such message has.
Answer readChassisAnswer(const std::string& body);

// The machine type of the first chassis that carries one, in SKU, model or part number; `model` is that chassis' model.
std::string machineTypeOf(const std::vector<Chassis>& chassis, std::string& model);
} // namespace cim

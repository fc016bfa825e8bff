#pragma once

#include <functional>
#include <string>

// The place where the TLS library is asked for a peer's certificate; the one file behind this header knows which library
// that is.
namespace trust
{
// Whether a certificate may be used today.
enum class Validity
{
    Now,
    NotYet,
    Over,
};

// A peer's certificate amid the handshake, before anything of the request is sent.
struct PresentedCertificate
{
    std::string fingerprint;
    bool verified = false;             // by the trusted authorities, for this host and today
    std::string reason;                // when it is not: the library's words
    Validity validity = Validity::Now; // of itself, whatever else is wrong and whoever signed it
};

// Decides on a certificate; true trusts it. Called on the thread that drives the transfer.
using CertificateJudge = std::function<bool(const PresentedCertificate&)>;

// Puts a judge into the handshakes of a transfer. It must outlive the transfer's connections.
class CertificateCheck
{
  public:
    // `host` as ConnectOption has it.
    CertificateCheck(const std::string& host, CertificateJudge judge);

    // True when this program's libcurl shows certificates. Without that a transfer is verified by libcurl alone, and
    // fingerprints cannot be trusted.
    static bool available();

    // Prepares a transfer (a CURL handle) whose peer is to be verified: from then on the judge alone decides. False
    // when the library did not take it; the transfer must then not be made.
    bool install(void* transfer) const;

    const std::string& host() const { return host_; }
    bool judge(const PresentedCertificate& certificate) const { return judge_(certificate); }

  private:
    std::string host_;
    CertificateJudge judge_;
};
} // namespace trust

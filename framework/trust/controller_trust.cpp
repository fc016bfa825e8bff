#include "trust/controller_trust.h"

#include "option_names.h"
#include "progress_bar/status_line.h"
#include "progress_bar/terminal.h"
#include "text/text.h"
#include "xmodule_log.h"

#include <iostream>

namespace trust
{
namespace
{
constexpr char kSource[] = "framework/trust/controller_trust";

std::string optionText(const char* name)
{
    return std::string("--") + name;
}

void announce(const std::string& controller, const std::string& fingerprint, const std::string& path)
{
    const std::string line =
        controller + ": trusted on first use, SHA-256 fingerprint " + fingerprint + ", now in " + text::visible(path);
    KORVAN_LOG(2, kSource) << line;
    if (terminal::errorIsTerminal())
    {
        status_line::clear();
    }
    std::cerr << "korvan: " + line + "\n" << std::flush;
}
// An authority's word does not make a certificate valid that is out of its time; a fingerprint does not ask for the time.
std::string adviceFor(Validity validity)
{
    const std::string compare =
        "compare the fingerprint with the controller's own and trust it with " + optionText(option::kTrustOnFirstUse);
    switch (validity)
    {
    case Validity::Over:
        return "it has expired by the clock of this machine; renew it on the controller, or " + compare + " as it is";
    case Validity::NotYet:
        return "it is not valid yet by the clock of this machine; set this clock and the controller's right, or " +
               compare + " as it is";
    case Validity::Now:
        break;
    }
    return "give the issuer's certificate with " + optionText(option::kCaCert) + ", or " + compare;
}
} // namespace

ControllerTrust::ControllerTrust(const ConnectOption& option)
    : controller_(controllerName(option.host, option.port)), fingerprint_(option.fingerprint),
      known_(option.knownControllers), trustOnFirstUse_(option.trustOnFirstUse)
{
}

bool ControllerTrust::accepts(const PresentedCertificate& certificate)
{
    refusal_.clear();
    if (!fingerprint_.empty())
    {
        return matchesTarget(certificate);
    }
    return certificate.verified || isKnown(certificate);
}

bool ControllerTrust::matchesTarget(const PresentedCertificate& certificate)
{
    if (certificate.fingerprint == fingerprint_)
    {
        return true;
    }
    refusal_ = "its SHA-256 fingerprint is " + certificate.fingerprint + ", but the target's own is " + fingerprint_ +
               "; correct the target list when the controller's certificate was replaced on purpose, else find out "
               "who answers at this address";
    return false;
}

bool ControllerTrust::isKnown(const PresentedCertificate& certificate)
{
    if (known_.path().empty())
    {
        refuseUnknown(certificate);
        return false;
    }
    Finding finding = known_.find(controller_, certificate.fingerprint);
    if (finding.knowledge == Knowledge::Unknown && trustOnFirstUse_)
    {
        finding = known_.addIfUnknown(controller_, certificate.fingerprint);
    }
    switch (finding.knowledge)
    {
    case Knowledge::Known:
        if (finding.added)
        {
            announce(controller_, certificate.fingerprint, known_.path());
        }
        return true;
    case Knowledge::Unknown:
        refuseUnknown(certificate);
        break;
    case Knowledge::Other:
        refusal_ = "its SHA-256 fingerprint is " + certificate.fingerprint + ", but the known one is " + finding.known +
                   "; when the controller's certificate was replaced on purpose, remove the line of " + controller_ +
                   " from " + known_.path() + ", else find out who answers at this address";
        break;
    case Knowledge::Broken:
        refusal_ = certificate.reason + "; its SHA-256 fingerprint is " + certificate.fingerprint + ", but " +
                   finding.reason + "; mend the file, or name another one with " +
                   optionText(option::kKnownControllers);
        break;
    }
    return false;
}

void ControllerTrust::refuseUnknown(const PresentedCertificate& certificate)
{
    refusal_ = certificate.reason + "; its SHA-256 fingerprint is " + certificate.fingerprint + ": " +
               adviceFor(certificate.validity) + "; " + optionText(option::kNeverCheckTrust) + " accepts any";
    if (trustOnFirstUse_)
    {
        refusal_ += "; there is no home folder for the file of known controllers, name one with " +
                    optionText(option::kKnownControllers);
    }
}
} // namespace trust

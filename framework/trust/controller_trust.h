#pragma once

#include "connect_option.h"
#include "trust/certificate_check.h"
#include "trust/known_controllers.h"

#include <string>

namespace trust
{
// Decides whether a target's certificate is trusted: one with a fingerprint of its own by exactly that; any other by
// the trusted authorities, else by the file of known controllers. Used by one thread at a time; the file is shared.
class ControllerTrust
{
  public:
    explicit ControllerTrust(const ConnectOption& option);

    // Trusts the certificate or keeps the reason in `refusal`. An unknown controller may be added to the file, which a
    // warning in the log and a line on standard error say.
    bool accepts(const PresentedCertificate& certificate);

    // Why the last certificate was refused and what to do, without a stop at its end; empty when it was trusted.
    const std::string& refusal() const { return refusal_; }
    void clearRefusal() { refusal_.clear(); }

  private:
    bool matchesTarget(const PresentedCertificate& certificate);
    bool isKnown(const PresentedCertificate& certificate);
    void refuseUnknown(const PresentedCertificate& certificate);

    std::string controller_;
    std::string fingerprint_; // the target's own
    KnownControllers known_;
    bool trustOnFirstUse_;
    std::string refusal_;
};
} // namespace trust

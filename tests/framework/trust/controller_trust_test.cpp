#include "trust/controller_trust.h"

#include "support/scratch_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

using test_support::readFile;
using test_support::ScratchFolder;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using trust::ControllerTrust;
using trust::PresentedCertificate;

namespace
{
const std::string kOne(64, '1');
const std::string kTwo(64, '2');

class ControllerTrustTest : public testing::Test
{
  protected:
    ControllerTrustTest()
    {
        option_.host = "Rack-A";
        option_.port = 8443;
        option_.knownControllers = folder_.file("known");
        oldErr_ = std::cerr.rdbuf(err_.rdbuf());
    }
    ~ControllerTrustTest() override { std::cerr.rdbuf(oldErr_); }

    static PresentedCertificate verified(const std::string& fingerprint)
    {
        PresentedCertificate certificate;
        certificate.fingerprint = fingerprint;
        certificate.verified = true;
        return certificate;
    }

    static PresentedCertificate unverified(const std::string& fingerprint)
    {
        PresentedCertificate certificate;
        certificate.fingerprint = fingerprint;
        certificate.reason = "self-signed certificate";
        return certificate;
    }

    const ScratchFolder folder_;
    ConnectOption option_;
    std::ostringstream err_;
    std::streambuf* oldErr_ = nullptr;
};
} // namespace

TEST_F(ControllerTrustTest, TakesTheWordOfAnAuthority)
{
    option_.trustOnFirstUse = true;
    ControllerTrust controllerTrust(option_);
    EXPECT_TRUE(controllerTrust.accepts(verified(kOne)));
    EXPECT_TRUE(controllerTrust.accepts(verified(kTwo)));
    EXPECT_EQ(readFile(option_.knownControllers), "") << "what an authority vouches for is not added";
    EXPECT_THAT(err_.str(), IsEmpty());
}

TEST_F(ControllerTrustTest, SaysOfAnUnknownOneHowToTrustIt)
{
    ControllerTrust controllerTrust(option_);
    EXPECT_FALSE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_THAT(controllerTrust.refusal(), AllOf(HasSubstr("self-signed certificate"), HasSubstr(kOne),
                                                 HasSubstr("--trust-on-first-use"), HasSubstr("--cacert")));
    EXPECT_EQ(readFile(option_.knownControllers), "");
}

TEST_F(ControllerTrustTest, SaysOfOneOutOfItsTimeWhatHelps)
{
    ControllerTrust controllerTrust(option_);
    PresentedCertificate certificate = unverified(kOne);
    certificate.validity = trust::Validity::Over;
    EXPECT_FALSE(controllerTrust.accepts(certificate));
    EXPECT_THAT(controllerTrust.refusal(),
                AllOf(HasSubstr(kOne), HasSubstr("has expired"), HasSubstr("renew it on the controller"),
                      HasSubstr("--trust-on-first-use"), Not(HasSubstr("--cacert"))));
    certificate.validity = trust::Validity::NotYet;
    EXPECT_FALSE(controllerTrust.accepts(certificate));
    EXPECT_THAT(controllerTrust.refusal(), AllOf(HasSubstr("not valid yet"), HasSubstr("clock"),
                                                 HasSubstr("--trust-on-first-use"), Not(HasSubstr("--cacert"))));
}

TEST_F(ControllerTrustTest, AddsAnUnknownOneOnFirstUseAndSaysSoOnce)
{
    option_.trustOnFirstUse = true;
    ControllerTrust controllerTrust(option_);
    EXPECT_TRUE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_THAT(err_.str(), AllOf(HasSubstr("rack-a:8443"), HasSubstr(kOne)));
    EXPECT_THAT(readFile(option_.knownControllers), HasSubstr("rack-a:8443 sha256 " + kOne + "\n"));
    err_.str("");
    EXPECT_TRUE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_THAT(err_.str(), IsEmpty());
}

TEST_F(ControllerTrustTest, RefusesAChangedOneWithBothFingerprints)
{
    folder_.write("known", "rack-a:8443 sha256 " + kTwo + "\n");
    for (const bool firstUse : {false, true})
    {
        option_.trustOnFirstUse = firstUse;
        ControllerTrust controllerTrust(option_);
        EXPECT_FALSE(controllerTrust.accepts(unverified(kOne)));
        EXPECT_THAT(controllerTrust.refusal(), AllOf(HasSubstr(kOne), HasSubstr(kTwo), HasSubstr("rack-a:8443"),
                                                     HasSubstr(option_.knownControllers)));
        EXPECT_TRUE(controllerTrust.accepts(unverified(kTwo)));
        EXPECT_THAT(controllerTrust.refusal(), IsEmpty());
    }
}

TEST_F(ControllerTrustTest, TrustsNobodyByABrokenFile)
{
    option_.trustOnFirstUse = true;
    folder_.write("known", "rack-a:8443 sha256 " + kOne + "\nhalf a li");
    ControllerTrust controllerTrust(option_);
    EXPECT_FALSE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_THAT(controllerTrust.refusal(), AllOf(HasSubstr("line 2"), HasSubstr("--known-controllers")));
}

TEST_F(ControllerTrustTest, TrustsNobodyOnFirstUseWithoutAFile)
{
    option_.trustOnFirstUse = true;
    option_.knownControllers.clear();
    ControllerTrust controllerTrust(option_);
    EXPECT_FALSE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_THAT(controllerTrust.refusal(), HasSubstr("--known-controllers"));
}

TEST_F(ControllerTrustTest, TrustsATargetsOwnFingerprintAndNothingElse)
{
    option_.fingerprint = kOne;
    option_.trustOnFirstUse = true;
    folder_.write("known", "rack-a:8443 sha256 " + kTwo + "\n");
    ControllerTrust controllerTrust(option_);
    EXPECT_TRUE(controllerTrust.accepts(unverified(kOne)));
    EXPECT_TRUE(controllerTrust.accepts(verified(kOne)));
    for (const PresentedCertificate& certificate : {unverified(kTwo), verified(kTwo)})
    {
        EXPECT_FALSE(controllerTrust.accepts(certificate));
        EXPECT_THAT(controllerTrust.refusal(), AllOf(HasSubstr(kOne), HasSubstr(kTwo)));
    }
}

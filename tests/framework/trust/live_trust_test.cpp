#include "framework/redfish/simulated_controller.h"
#include "interrupt.h"
#include "redfish/client.h"
#include "redfish/service_reader.h"
#include "trust/known_controllers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/evp.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

using redfish::Client;
using test_support::readFile;
using test_support::ScratchFolder;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace
{
const std::string kOther(64, '7');

std::string certificateHabit(const std::string& kind)
{
    return R"("behaviour": {"certificate": ")" + kind + R"("})";
}

// What another client than ours sees.
std::string presentedFingerprint(const ConnectOption& option)
{
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_client_method()), SSL_CTX_free);
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> connection(BIO_new_ssl_connect(context.get()), BIO_free_all);
    BIO_set_conn_hostname(connection.get(), (option.host + ":" + std::to_string(option.port)).c_str());
    SSL* ssl = nullptr;
    BIO_get_ssl(connection.get(), &ssl);
    std::string hex;
    if (BIO_do_connect(connection.get()) == 1 && BIO_do_handshake(connection.get()) == 1)
    {
        const std::unique_ptr<X509, decltype(&X509_free)> certificate(SSL_get1_peer_certificate(ssl), X509_free);
        unsigned char digest[EVP_MAX_MD_SIZE];
        unsigned int length = 0;
        X509_digest(certificate.get(), EVP_sha256(), digest, &length);
        for (unsigned int index = 0; index < length; ++index)
        {
            char pair[3];
            std::snprintf(pair, sizeof pair, "%02x", digest[index]);
            hex += pair;
        }
    }
    return hex;
}

class LiveTrustTest : public testing::Test
{
  protected:
    LiveTrustTest() { interrupt::reset(); }

    ConnectOption optionFor(const SimulatedController& controller) const
    {
        ConnectOption option = controller.option();
        option.checkTrust = true;
        option.knownControllers = known();
        return option;
    }

    static KorvanResult read(const ConnectOption& option)
    {
        redfish::ClientLimits limits;
        limits.backOff = std::chrono::milliseconds(10);
        Client client(option, limits);
        redfish::ServiceRoot root;
        const KorvanResult opened = redfish::openService(client, root);
        nlohmann::json document;
        return opened.succeeded() ? client.getJson("/redfish/v1/Systems", document).result : opened;
    }

    static std::size_t requestsOf(SimulatedController& controller)
    {
        return nlohmann::json::parse(controller.stopForStatistics()).at("requests").get<std::size_t>();
    }

    std::string known() const { return folder_.file("known"); }

    const ScratchFolder folder_;
};
} // namespace

TEST_F(LiveTrustTest, NothingIsAskedOfAnUnknownController)
{
    SimulatedController controller("rack-a");
    const ConnectOption option = optionFor(controller);
    const KorvanResult result = read(option);
    EXPECT_EQ(36U, result.number()) << result;
    EXPECT_THAT(result.message, AllOf(HasSubstr(presentedFingerprint(option)), HasSubstr("--trust-on-first-use"),
                                      Not(HasSubstr(SimulatedController::kPassword))));
    EXPECT_EQ(0U, requestsOf(controller)) << "no login leaves before the certificate is trusted";
    EXPECT_EQ(readFile(known()), "");
}

TEST_F(LiveTrustTest, AFirstUseIsRememberedWhateverIsWrongWithTheCertificate)
{
    for (const char* kind : {"valid", "expired", "wrong_host", "self_signed"})
    {
        SimulatedController controller("rack-a", certificateHabit(kind));
        ConnectOption option = optionFor(controller);
        EXPECT_EQ(36U, read(option).number()) << kind;
        option.trustOnFirstUse = true;
        const KorvanResult first = read(option);
        EXPECT_EQ(0U, first.number()) << kind << ": " << first;
        EXPECT_THAT(readFile(known()), HasSubstr("\n127.0.0.1:" + std::to_string(option.port) + " sha256 " +
                                                 presentedFingerprint(option) + "\n"));
        option.trustOnFirstUse = false;
        const KorvanResult second = read(option);
        EXPECT_EQ(0U, second.number()) << kind << ": " << second;
    }
}

TEST_F(LiveTrustTest, AnExpiredCertificateIsToBeRenewedOrTrustedByItsFingerprint)
{
    SimulatedController controller("rack-a", certificateHabit("expired"));
    ConnectOption option = optionFor(controller);
    for (const std::string& authority : {std::string(), controller.caFile()})
    {
        option.caCert = authority;
        const KorvanResult result = read(option);
        EXPECT_EQ(36U, result.number()) << result;
        EXPECT_THAT(result.message, AllOf(HasSubstr("renew it on the controller"), HasSubstr("--trust-on-first-use"),
                                          HasSubstr(presentedFingerprint(option)), Not(HasSubstr("--cacert"))));
    }
    option.fingerprint = presentedFingerprint(option);
    EXPECT_EQ(0U, read(option).number());
}

TEST_F(LiveTrustTest, AChangedCertificateIsRefusedWithBothFingerprints)
{
    SimulatedController controller("rack-a");
    ConnectOption option = optionFor(controller);
    const std::string before = "127.0.0.1:" + std::to_string(option.port) + " sha256 " + kOther + "\n";
    folder_.write("known", before);
    for (const bool firstUse : {false, true})
    {
        option.trustOnFirstUse = firstUse;
        const KorvanResult result = read(option);
        EXPECT_EQ(36U, result.number()) << result;
        EXPECT_THAT(result.message, AllOf(HasSubstr(kOther), HasSubstr(presentedFingerprint(option))));
    }
    EXPECT_EQ(readFile(known()), before);
    EXPECT_EQ(0U, requestsOf(controller));
}

TEST_F(LiveTrustTest, AnAuthoritysWordAddsNothing)
{
    SimulatedController controller("rack-a");
    ConnectOption option = optionFor(controller);
    option.caCert = controller.caFile();
    option.trustOnFirstUse = true;
    const KorvanResult result = read(option);
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ(readFile(known()), "");
}

TEST_F(LiveTrustTest, NothingIsCheckedOrAddedWhenTheUserDeclines)
{
    SimulatedController controller("rack-a");
    ConnectOption option = optionFor(controller);
    option.checkTrust = false;
    option.trustOnFirstUse = true;
    option.fingerprint = kOther;
    const KorvanResult result = read(option);
    EXPECT_EQ(0U, result.number()) << result;
    EXPECT_EQ(readFile(known()), "");
}

TEST_F(LiveTrustTest, ATargetsOwnFingerprintAloneCounts)
{
    SimulatedController controller("rack-a");
    ConnectOption option = optionFor(controller);
    const std::string presented = presentedFingerprint(option);
    option.fingerprint = presented;
    option.caCert = "/nowhere/ca.pem";
    const KorvanResult right = read(option);
    EXPECT_EQ(0U, right.number()) << right;
    option.fingerprint = kOther;
    option.caCert = controller.caFile();
    option.trustOnFirstUse = true;
    const KorvanResult wrong = read(option);
    EXPECT_EQ(36U, wrong.number()) << wrong;
    EXPECT_THAT(wrong.message, AllOf(HasSubstr(kOther), HasSubstr(presented)));
    EXPECT_EQ(readFile(known()), "");
}

TEST_F(LiveTrustTest, AFingerprintNeedsEncryption)
{
    SimulatedController controller("rack-a", R"("tls": false)");
    ConnectOption option = optionFor(controller);
    option.fingerprint = kOther;
    const KorvanResult result = read(option);
    EXPECT_EQ(36U, result.number()) << result;
    EXPECT_THAT(result.message, HasSubstr("https"));
    EXPECT_EQ(0U, requestsOf(controller));
}

TEST_F(LiveTrustTest, FirstUsesAtTheSameTimeAddOneLine)
{
    SimulatedController controller("rack-a");
    ConnectOption option = optionFor(controller);
    option.trustOnFirstUse = true;
    option.connectTimeout = std::chrono::seconds(20); // they wait for one another within their handshakes
    std::vector<std::string> results(4);
    std::vector<std::thread> threads;
    for (std::string& result : results)
    {
        threads.emplace_back([&result, &option] { result = read(option).messageText(); });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(results, std::vector<std::string>(4, KorvanResult().messageText()));
    const std::string content = readFile(known());
    EXPECT_EQ(std::count(content.begin(), content.end(), '\n'), 2) << content;
}

TEST_F(LiveTrustTest, OldTlsIsSpokenOnlyWhenAsked)
{
    for (const char* newest : {R"("max_tls": "1.0")", R"("max_tls": "1.1")", R"("old_cipher": true)"})
    {
        SimulatedController controller("rack-a", std::string(R"("behaviour": {)") + newest + "}");
        ConnectOption option = optionFor(controller);
        option.caCert = controller.caFile();
        const KorvanResult refused = read(option);
        EXPECT_EQ(13U, refused.number()) << newest << ": " << refused;
        EXPECT_THAT(refused.message, HasSubstr("old_tls"));
        option.oldTls = true;
        const KorvanResult spoken = read(option);
        EXPECT_EQ(0U, spoken.number()) << newest << ": " << spoken;
        option.caCert.clear();
        EXPECT_EQ(36U, read(option).number()) << newest << ": old TLS does not lift the check of certificates";
    }
}

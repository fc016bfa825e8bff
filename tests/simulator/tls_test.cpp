#include "simulator/http_client.h"
#include "simulator/simulated.h"

#include <curl/curl.h>

namespace simulator_tests
{
namespace
{
using simulator::CertificateKind;

class Tls : public Simulated
{
  protected:
    Tls()
    {
        config.tls = true;
        config.address = "127.0.0.21";
    }

    Call checking() const
    {
        Call call;
        call.authorityFile = folder.write("authority.pem", server->authorityPem());
        return call;
    }
};

TEST_F(Tls, VerifiesWithTheWrittenAuthority)
{
    start();
    const Answer answer = request(url(kSystems), checking());
    EXPECT_EQ(answer.transport, CURLE_OK);
    EXPECT_EQ(answer.status, 200);
}

TEST_F(Tls, FailsVerificationWithAnotherAuthority)
{
    start();
    const Call other = checking();
    start();
    EXPECT_EQ(request(url(kSystems), other).transport, CURLE_PEER_FAILED_VERIFICATION);
}

TEST_F(Tls, FailsVerificationWithAWrongCertificate)
{
    for (const CertificateKind kind :
         {CertificateKind::Expired, CertificateKind::WrongHost, CertificateKind::SelfSigned})
    {
        config.behaviour.certificate = kind;
        start();
        EXPECT_EQ(request(url(kSystems), checking()).transport, CURLE_PEER_FAILED_VERIFICATION);
        EXPECT_EQ(request(url(kSystems)).status, 200);
    }
}

TEST_F(Tls, HoldsBackNewVersions)
{
    config.behaviour.maxTls = simulator::TlsVersion::Tls11;
    start();
    EXPECT_EQ(request(url(kSystems)).transport, CURLE_SSL_CONNECT_ERROR);
    config.behaviour.maxTls = simulator::TlsVersion::Tls12;
    start();
    EXPECT_EQ(request(url(kSystems)).status, 200);
}

TEST_F(Tls, CountsClientsThatSpeakNone)
{
    start();
    const std::string plain = "http" + url(kSystems).substr(5);
    EXPECT_NE(request(plain).transport, CURLE_OK);
    EXPECT_EQ(statistics().requests, 0U);
}

TEST_F(Tls, CutsAreSeenToo)
{
    addFault({{"action", "cut_in_body"}});
    start();
    EXPECT_NE(request(url(kSystems)).transport, CURLE_OK);
}

TEST_F(Tls, ServesIpv6Loopback)
{
    config.address = "::1";
    try
    {
        start();
    }
    catch (const std::exception& error)
    {
        // A system without IPv6 cannot serve it, and must say which controller and address it was.
        EXPECT_NE(std::string(error.what()).find("cannot listen on ::1"), std::string::npos) << error.what();
        return;
    }
    EXPECT_EQ(request(url(kSystems), checking()).status, 200);
}
} // namespace
} // namespace simulator_tests

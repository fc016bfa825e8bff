#include "trust/certificate_check.h"

#include "text/text.h"

#include <curl/curl.h>
#include <openssl/evp.h>
#include <openssl/opensslv.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <exception>
#include <utility>

namespace trust
{
namespace
{
std::string fingerprintOf(const X509* certificate)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (certificate == nullptr || X509_digest(certificate, EVP_sha256(), digest, &length) != 1)
    {
        return std::string();
    }
    std::string hex;
    for (unsigned int index = 0; index < length; ++index)
    {
        hex += kDigits[digest[index] >> 4U];
        hex += kDigits[digest[index] & 0x0FU];
    }
    return hex;
}

// Lets the verification compare the host too; libcurl would do it only after the handshake, also for a certificate
// that is trusted by its fingerprint.
bool expectHost(X509_STORE_CTX* context, const std::string& host)
{
    X509_VERIFY_PARAM* const parameters = X509_STORE_CTX_get0_param(context);
    const std::string address = host.substr(0, host.find('%')); // a certificate knows no zone (RFC 6874)
    if (parameters == nullptr || address.empty())
    {
        return false;
    }
    if (X509_VERIFY_PARAM_set1_ip_asc(parameters, address.c_str()) == 1)
    {
        return true;
    }
    const std::string name = host.back() == '.' ? host.substr(0, host.size() - 1) : host;
    X509_VERIFY_PARAM_set_hostflags(parameters, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    return !name.empty() && X509_VERIFY_PARAM_set1_host(parameters, name.c_str(), name.size()) == 1;
}

Validity validityOf(const X509* certificate)
{
    // Zero: the certificate's date cannot be read, which the verification itself complains about.
    if (X509_cmp_current_time(X509_get0_notAfter(certificate)) < 0)
    {
        return Validity::Over;
    }
    return X509_cmp_current_time(X509_get0_notBefore(certificate)) > 0 ? Validity::NotYet : Validity::Now;
}

bool judged(X509_STORE_CTX* context, const CertificateCheck& check)
{
    PresentedCertificate presented;
    presented.fingerprint = fingerprintOf(X509_STORE_CTX_get0_cert(context));
    if (presented.fingerprint.empty() || !expectHost(context, check.host()))
    {
        return false;
    }
    presented.verified = X509_verify_cert(context) == 1;
    presented.validity = validityOf(X509_STORE_CTX_get0_cert(context));
    presented.reason = presented.verified ? "" : X509_verify_cert_error_string(X509_STORE_CTX_get_error(context));
    return check.judge(presented);
}

// In the place of OpenSSL's own verification. An exception must not leave through its C code.
int verify(X509_STORE_CTX* context, void* user)
{
    bool trusted = false;
    try
    {
        trusted = judged(context, *static_cast<const CertificateCheck*>(user));
    }
    catch (const std::exception&)
    {
        trusted = false;
    }
    if (trusted)
    {
        X509_STORE_CTX_set_error(context, X509_V_OK);
    }
    else if (X509_STORE_CTX_get_error(context) == X509_V_OK)
    {
        X509_STORE_CTX_set_error(context, X509_V_ERR_APPLICATION_VERIFICATION);
    }
    return trusted ? 1 : 0;
}

CURLcode prepareContext(CURL* /*transfer*/, void* tlsContext, void* user)
{
    SSL_CTX_set_cert_verify_callback(static_cast<SSL_CTX*>(tlsContext), verify, user);
    return CURLE_OK;
}
} // namespace

CertificateCheck::CertificateCheck(const std::string& host, CertificateJudge judge)
    : host_(host), judge_(std::move(judge))
{
}

// Libraries of the same interface hand over contexts of their own, and another release of OpenSSL may lay its own out
// in another way.
bool CertificateCheck::available()
{
    const curl_version_info_data* const version = curl_version_info(CURLVERSION_NOW);
    const std::string release = "OpenSSL/" + std::to_string(OPENSSL_VERSION_MAJOR) + ".";
    return version->ssl_version != nullptr && text::startsWith(version->ssl_version, release);
}

bool CertificateCheck::install(void* transfer) const
{
    // The data pointer of the callback is not const.
    void* const self = const_cast<CertificateCheck*>(this);
    return available() && curl_easy_setopt(transfer, CURLOPT_SSL_CTX_FUNCTION, prepareContext) == CURLE_OK &&
           curl_easy_setopt(transfer, CURLOPT_SSL_CTX_DATA, self) == CURLE_OK &&
           curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L) == CURLE_OK &&
           curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, 0L) == CURLE_OK;
}
} // namespace trust

#include "tls_certificate.h"

#include "simulator_error.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <cstdint>

namespace simulator
{
namespace
{
template <class Object, void (*release)(Object*)>
struct Release
{
    void operator()(Object* object) const { release(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY, EVP_PKEY_free>>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, Release<EVP_PKEY_CTX, EVP_PKEY_CTX_free>>;
using Certificate = std::unique_ptr<X509, Release<X509, X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Release<X509_EXTENSION, X509_EXTENSION_free>>;

constexpr long kDay = 24L * 60 * 60;

void check(bool good, const char* what)
{
    if (!good)
    {
        throw SimulatorError(std::string("the TLS library failed at ") + what);
    }
}

Key newKey()
{
    const KeyContext context(EVP_PKEY_CTX_new_id(EVP_PKEY_EC, nullptr));
    EVP_PKEY* key = nullptr;
    check(context && EVP_PKEY_keygen_init(context.get()) == 1 &&
              EVP_PKEY_CTX_set_ec_paramgen_curve_nid(context.get(), NID_X9_62_prime256v1) == 1 &&
              EVP_PKEY_keygen(context.get(), &key) == 1,
          "making a key");
    return Key(key);
}

// For ciphers that exchange keys by RSA.
Key newRsaKey()
{
    constexpr int bits = 2048;
    const KeyContext context(EVP_PKEY_CTX_new_id(EVP_PKEY_RSA, nullptr));
    EVP_PKEY* key = nullptr;
    check(context && EVP_PKEY_keygen_init(context.get()) == 1 &&
              EVP_PKEY_CTX_set_rsa_keygen_bits(context.get(), bits) == 1 && EVP_PKEY_keygen(context.get(), &key) == 1,
          "making a key");
    return Key(key);
}

void setSerial(X509* certificate)
{
    std::uint64_t serial = 0;
    check(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1, "making a serial number");
    check(ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), serial >> 1U | 1U) == 1, "a serial number");
}

void setName(X509* certificate, const std::string& name)
{
    X509_NAME* subject = X509_get_subject_name(certificate);
    // RFC 5280 allows a common name 64 characters.
    const std::string common = name.substr(0, 64);
    check(X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_UTF8,
                                     reinterpret_cast<const unsigned char*>(common.c_str()), -1, -1, 0) == 1,
          "a name");
}

void addExtension(X509* certificate, X509* issuer, int kind, const std::string& value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const Extension extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value.c_str()));
    check(extension && X509_add_ext(certificate, extension.get(), -1) == 1, "an extension");
}

Certificate newCertificate(const std::string& name, EVP_PKEY* key, long fromSeconds, long toSeconds)
{
    Certificate certificate(X509_new());
    check(certificate && X509_set_version(certificate.get(), X509_VERSION_3) == 1, "making a certificate");
    setSerial(certificate.get());
    check(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), fromSeconds) != nullptr &&
              X509_gmtime_adj(X509_getm_notAfter(certificate.get()), toSeconds) != nullptr &&
              X509_set_pubkey(certificate.get(), key) == 1,
          "making a certificate");
    setName(certificate.get(), name);
    return certificate;
}

void sign(X509* certificate, X509* issuer, EVP_PKEY* key)
{
    check(X509_set_issuer_name(certificate, X509_get_subject_name(issuer)) == 1, "naming an issuer");
    addExtension(certificate, certificate, NID_subject_key_identifier, "hash");
    if (issuer != certificate)
    {
        addExtension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
    }
    check(X509_sign(certificate, key, EVP_sha256()) > 0, "signing a certificate");
}

std::string pemOf(X509* certificate)
{
    const std::unique_ptr<BIO, Release<BIO, BIO_free_all>> memory(BIO_new(BIO_s_mem()));
    check(memory && PEM_write_bio_X509(memory.get(), certificate) == 1, "writing a certificate");
    char* data = nullptr;
    const long size = BIO_get_mem_data(memory.get(), &data);
    return std::string(data, static_cast<std::size_t>(size));
}

int versionNumber(TlsVersion version)
{
    switch (version)
    {
    case TlsVersion::Tls10:
        return TLS1_VERSION;
    case TlsVersion::Tls11:
        return TLS1_1_VERSION;
    case TlsVersion::Tls12:
        return TLS1_2_VERSION;
    default:
        return TLS1_3_VERSION;
    }
}

void limitVersion(SSL_CTX* context, TlsVersion most)
{
    if (most == TlsVersion::Tls10 || most == TlsVersion::Tls11)
    {
        // The library's ordinary security level refuses the hashes of these versions.
        SSL_CTX_set_security_level(context, 0);
        check(SSL_CTX_set_min_proto_version(context, TLS1_VERSION) == 1, "allowing old TLS");
        check(SSL_CTX_set_cipher_list(context, "ALL:@SECLEVEL=0") == 1, "allowing old ciphers");
    }
    else
    {
        check(SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) == 1, "setting the TLS version");
    }
    check(SSL_CTX_set_max_proto_version(context, versionNumber(most)) == 1, "setting the TLS version");
}

void limitCipher(SSL_CTX* context)
{
    check(SSL_CTX_set_max_proto_version(context, TLS1_2_VERSION) == 1 &&
              SSL_CTX_set_cipher_list(context, "AES256-SHA") == 1,
          "setting the cipher");
}
} // namespace

struct CertificateAuthority::Keys
{
    Key authorityKey;
    Certificate authority;
    Key serverKey;
};

CertificateAuthority::CertificateAuthority() : keys_(std::make_unique<Keys>())
{
    keys_->authorityKey = newKey();
    keys_->serverKey = newKey();
    keys_->authority = newCertificate("Simulator authority", keys_->authorityKey.get(), -kDay, 365 * kDay);
    X509* const certificate = keys_->authority.get();
    addExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
    addExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
    sign(certificate, certificate, keys_->authorityKey.get());
    pem_ = pemOf(certificate);
}

CertificateAuthority::~CertificateAuthority() = default;

std::shared_ptr<boost::asio::ssl::context> CertificateAuthority::serverContext(const std::string& name,
                                                                               const std::string& address,
                                                                               const Behaviour& behaviour) const
{
    const bool expired = behaviour.certificate == CertificateKind::Expired;
    const bool selfSigned = behaviour.certificate == CertificateKind::SelfSigned;
    const Key rsaKey = behaviour.oldCipher ? newRsaKey() : Key();
    EVP_PKEY* const key = behaviour.oldCipher ? rsaKey.get() : keys_->serverKey.get();
    const Certificate certificate =
        newCertificate(name, key, expired ? -30 * kDay : -kDay, expired ? -2 * kDay : 365 * kDay);
    addExtension(certificate.get(), certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), certificate.get(), NID_key_usage,
                 behaviour.oldCipher ? "critical,keyEncipherment" : "critical,digitalSignature");
    addExtension(certificate.get(), certificate.get(), NID_ext_key_usage, "serverAuth");
    const std::string names = behaviour.certificate == CertificateKind::WrongHost
                                  ? "DNS:elsewhere.invalid"
                                  : "DNS:localhost,IP:127.0.0.1" + (address == "127.0.0.1" ? "" : ",IP:" + address);
    addExtension(certificate.get(), certificate.get(), NID_subject_alt_name, names);
    sign(certificate.get(), selfSigned ? certificate.get() : keys_->authority.get(),
         selfSigned ? key : keys_->authorityKey.get());

    auto context = std::make_shared<boost::asio::ssl::context>(boost::asio::ssl::context::tls_server);
    SSL_CTX* const native = context->native_handle();
    check(SSL_CTX_use_certificate(native, certificate.get()) == 1 && SSL_CTX_use_PrivateKey(native, key) == 1,
          "loading a certificate");
    limitVersion(native, behaviour.maxTls);
    if (behaviour.oldCipher)
    {
        limitCipher(native);
    }
    return context;
}
} // namespace simulator

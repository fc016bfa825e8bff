#pragma once

#include "behaviour.h"

#include <boost/asio/ssl/context.hpp>

#include <memory>
#include <string>

namespace simulator
{
// The authority made at the start and the certificates that it signs: EC P-256, valid for a year from yesterday. One
// key serves all controllers; each has a certificate (and so a fingerprint) of its own. For one thread at a time.
class CertificateAuthority
{
  public:
    CertificateAuthority();
    ~CertificateAuthority();
    CertificateAuthority(const CertificateAuthority&) = delete;
    CertificateAuthority& operator=(const CertificateAuthority&) = delete;

    // The authority's certificate in PEM form, for clients that are to trust the controllers.
    const std::string& pem() const { return pem_; }

    // A server's settings with a fresh certificate for `address`, localhost and 127.0.0.1.
    std::shared_ptr<boost::asio::ssl::context> serverContext(const std::string& name, const std::string& address,
                                                             const Behaviour& behaviour) const;

  private:
    struct Keys;
    std::unique_ptr<Keys> keys_;
    std::string pem_;
};
} // namespace simulator

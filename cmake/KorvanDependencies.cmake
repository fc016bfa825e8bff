# Everything comes from the distribution's packages; vcpkg.json names the same for Windows.

if(MINGW)
  # All of them go into our own files, which then need nothing but Windows.
  set(Boost_USE_STATIC_LIBS ON)
  set(OPENSSL_USE_STATIC_LIBS ON)
  set(OPENSSL_ROOT_DIR ${KORVAN_WINDOWS_PREFIX})
endif()

find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem regex)
find_package(CURL 7.81 REQUIRED)
find_package(OpenSSL REQUIRED)
find_package(nlohmann_json 3.9 REQUIRED)
find_package(CLI11 REQUIRED)
find_package(spdlog REQUIRED)
find_package(pugixml REQUIRED)

if(MINGW)
  target_link_libraries(OpenSSL::Crypto INTERFACE ws2_32 crypt32 bcrypt)
endif()

# Certificates are judged by their fingerprints in OpenSSL's handshake; a libcurl over another library shows none
# (framework/trust/certificate_check.h). A cross build cannot ask it.
if(NOT CMAKE_CROSSCOMPILING AND NOT DEFINED KORVAN_CURL_TLS)
  try_run(KORVAN_CURL_RUNS KORVAN_CURL_BUILDS
    ${CMAKE_BINARY_DIR}/curl_tls ${PROJECT_SOURCE_DIR}/cmake/curl_tls.cpp
    LINK_LIBRARIES CURL::libcurl
    RUN_OUTPUT_VARIABLE curl_tls)
  if(KORVAN_CURL_BUILDS AND KORVAN_CURL_RUNS EQUAL 0)
    string(STRIP "${curl_tls}" curl_tls)
    set(KORVAN_CURL_TLS "${curl_tls}" CACHE INTERNAL "The TLS library of libcurl")
  endif()
endif()
if(KORVAN_CURL_TLS AND NOT KORVAN_CURL_TLS MATCHES "^OpenSSL/")
  message(WARNING "libcurl uses ${KORVAN_CURL_TLS} instead of OpenSSL: the programs of this build cannot trust a "
    "controller by its fingerprint. Install the libcurl that is built on OpenSSL (libcurl4-openssl-dev; with vcpkg the "
    "feature openssl of curl) and configure a new build folder.")
endif()

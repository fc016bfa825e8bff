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

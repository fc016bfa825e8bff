# Everything comes from the distribution's packages; vcpkg.json names the same for Windows.

find_package(Threads REQUIRED)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem regex)
find_package(CURL 7.81 REQUIRED)
find_package(OpenSSL REQUIRED)
find_package(nlohmann_json 3.9 REQUIRED)
find_package(CLI11 REQUIRED)
find_package(spdlog REQUIRED)
find_package(pugixml REQUIRED)

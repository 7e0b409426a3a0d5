# The packages that layers.txt calls "outside", by the names it gives them.

# Since CMake 3.30 its own module for Boost is gone; the package's configuration works everywhere.
find_package(Boost 1.74 CONFIG REQUIRED COMPONENTS filesystem headers system)
find_package(EXPAT 2.5 REQUIRED)
find_package(LibXml2 REQUIRED)
find_package(ZLIB REQUIRED)

set(HALVERN_OUTSIDE_boost Boost::headers Boost::filesystem Boost::system)
set(HALVERN_OUTSIDE_zlib ZLIB::ZLIB)
set(HALVERN_OUTSIDE_expat EXPAT::EXPAT)
set(HALVERN_OUTSIDE_libxml2 LibXml2::LibXml2)
set(HALVERN_OUTSIDE_dlfcn ${CMAKE_DL_LIBS})

if(NOT HALVERN_FUZZ)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json REQUIRED)
  set(HALVERN_OUTSIDE_cli11 CLI11::CLI11)
  set(HALVERN_OUTSIDE_nlohmann nlohmann_json::nlohmann_json)
endif()

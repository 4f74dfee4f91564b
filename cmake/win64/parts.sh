#!/bin/bash
# Builds the libraries that Fetchyard leans on for 64-bit Windows, once, from the distribution's own source packages:
#   parts.sh [PART...]     all of them, or those named
# They lie in ${FETCHYARD_CACHE:-~/.cache/fetchyard}/win64/parts; a stamp for each part lets an interrupted run go on.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=${FETCHYARD_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/fetchyard}/win64
prefix=$work/parts
jobs=${FETCHYARD_JOBS:-$(nproc)}
host=x86_64-w64-mingw32
mkdir -p "$work/stamps" "$work/sources" "$work/build" "$prefix/include" "$prefix/lib/pkgconfig" "$prefix/lib/cmake" "$prefix/share/cmake"
# pkg-config must not see this system's own libraries.
export PKG_CONFIG_LIBDIR=$prefix/lib/pkgconfig PKG_CONFIG_PATH= FETCHYARD_WIN64_PARTS=$prefix
unset CFLAGS CXXFLAGS CPPFLAGS LDFLAGS MAKEFLAGS

all_parts="headers pugixml spdlog simdjson httplib sqlite exif googletest curl openssl xlsxwriter qt"

quietly() {   # COMMAND...: its output goes to the part's log, of which the end is shown if it fails
  "$@" >>"$work/$part.log" 2>&1 || {
    tail -n 40 "$work/$part.log" >&2
    echo "parts.sh: '$part' failed; the whole log is $work/$part.log" >&2
    return 1
  }
}

# The system's own package sources, as source entries in a list of our own.
source_lists() {
  local lists=$work/apt file
  [ ! -e "$lists/ready" ] || return 0
  mkdir -p "$lists/sources" "$lists/lists/partial" "$lists/cache/archives/partial"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.list; do
    [ ! -e "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >"$lists/sources/$(basename "$file" .list).list"
  done
  file=/etc/apt/sources.list.d/debian.sources
  [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$lists/sources/debian.sources"
  quietly apt_own update
  touch "$lists/ready"
}

apt_own() {
  apt-get -q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/apt/sources" \
    -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt/cache" -o "APT::Sandbox::User=$(id -un)" "$@"
}

# The lists of an earlier day may name what is no longer there, and a mirror may not have the newest.
download() {   # PACKAGE
  local version
  for version in "" $(versions "$1"); do
    ! apt_own source --download-only "$1${version:+=$version}" >>"$work/$part.log" 2>&1 || return 0
    [ -n "$version" ] || quietly apt_own update
    rm -f ./*
  done
  echo "parts.sh: no source of $1 can be had; $work/$part.log tells why" >&2
  return 1
}

versions() {   # PACKAGE: from the newest to the oldest
  apt-cache -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$work/apt/sources" -o "Dir::State::Lists=$work/apt/lists" \
    showsrc --only-source "$1" | sed -n 's/^Version: //p' | sort -rVu
}

unpack() {   # PACKAGE: its source with the distribution's patches, in sources/PACKAGE
  local package=$1
  [ ! -d "$work/sources/$package" ] || return 0
  (
    flock 9
    source_lists
    mkdir -p "$work/downloads/$package"
    cd "$work/downloads/$package"
    download "$package"
  ) 9>"$work/apt.lock"
  rm -rf "$work/sources/$package.part"
  quietly dpkg-source --no-check -x "$work/downloads/$package"/*.dsc "$work/sources/$package.part"
  mv "$work/sources/$package.part" "$work/sources/$package"
}

with_cmake() {   # PACKAGE OPTION...
  local package=$1
  shift
  unpack "$package"
  quietly cmake -S "$work/sources/$package" -B "$work/build/$package" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" -DFETCHYARD_WIN64_PARTS="$prefix" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "$@"
  quietly cmake --build "$work/build/$package" --parallel "$jobs"
  quietly cmake --install "$work/build/$package"
}

package_file() {   # NAME VERSION LIBS
  cat >"$prefix/lib/pkgconfig/$1.pc" <<END
prefix=$prefix
Name: $1
Description: $1 for 64-bit Windows
Version: $2
Libs: -L\${prefix}/lib $3
Cflags: -I\${prefix}/include
END
}

# Libraries that are headers alone: links to their folders and nothing else of /usr/include, whose C headers are
# this system's.
part_headers() {
  local folder
  for folder in boost CLI nlohmann rapidjson valijson; do
    ln -sfn "/usr/include/$folder" "$prefix/include/$folder"
  done
  for folder in CLI11 nlohmann_json; do
    cp -r "/usr/share/cmake/$folder" "$prefix/share/cmake/"
  done
  package_file RapidJSON 1.1.0 ""
  # Of Boost.Thread only the mutex and its locks are used, and these are headers here.
  mkdir -p "$prefix/lib/cmake/Boost"
  cp "$here/BoostConfig.cmake" "$here/BoostConfigVersion.cmake" "$prefix/lib/cmake/Boost/"
}

part_pugixml() { with_cmake pugixml; }

part_spdlog() {
  with_cmake fmtlib -DFMT_DOC=OFF -DFMT_TEST=OFF
  with_cmake spdlog -DSPDLOG_FMT_EXTERNAL=OFF -DSPDLOG_FMT_EXTERNAL_HO=ON -DSPDLOG_BUILD_EXAMPLE=OFF -DSPDLOG_BUILD_TESTS=OFF
}

part_simdjson() { with_cmake simdjson -DSIMDJSON_DEVELOPER_MODE=OFF; }

part_httplib() {
  unpack cpp-httplib
  local out=$work/build/cpp-httplib
  mkdir -p "$out"
  quietly python3 "$work/sources/cpp-httplib/split.py" -e cc -o "$out"
  quietly $host-g++-posix -std=c++17 -O2 -D_WIN32_WINNT=0x0A00 -c "$out/httplib.cc" -o "$out/httplib.o"
  rm -f "$prefix/lib/libcpp-httplib.a"
  quietly $host-ar rcs "$prefix/lib/libcpp-httplib.a" "$out/httplib.o"
  cp "$out/httplib.h" "$prefix/include/"
  package_file cpp-httplib 0.11 "-lcpp-httplib -lws2_32 -lcrypt32"
}

part_sqlite() {
  unpack sqlite3
  local out=$work/build/sqlite3
  mkdir -p "$out"
  (
    cd "$out"
    # The one big source is made by programs of this system.
    quietly "$work/sources/sqlite3/configure" --disable-tcl --disable-readline --disable-shared
    quietly make sqlite3.c sqlite3.h
    quietly $host-gcc-posix -O2 -DSQLITE_THREADSAFE=1 -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_ENABLE_FTS5 \
      -DSQLITE_ENABLE_RTREE -c sqlite3.c -o sqlite3.o
    rm -f "$prefix/lib/libsqlite3.a"
    quietly $host-ar rcs "$prefix/lib/libsqlite3.a" sqlite3.o
    cp sqlite3.h "$prefix/include/"
  )
  package_file sqlite3 "$(cat "$work/sources/sqlite3/VERSION")" -lsqlite3
}

# With the digests of OpenSSL: its own have the same names.
part_xlsxwriter() {
  with_cmake libxlsxwriter -DUSE_OPENSSL_MD5=ON -DOPENSSL_ROOT_DIR="$prefix"
  package_file xlsxwriter 1.1.4 "-lxlsxwriter -lcrypto -L/usr/$host/lib -lz"
}

# Without the settings that its own build would find out, as none of them matters here.
part_exif() {
  unpack libexif
  local out=$work/build/libexif source=$work/sources/libexif
  mkdir -p "$out" "$prefix/include/libexif"
  cd "$out"
  printf '%s\n' '#define GETTEXT_PACKAGE "libexif"' >config.h
  mkdir -p libexif
  echo '#include <stdint.h>' >libexif/_stdint.h
  quietly $host-gcc-posix -O2 -I. -I"$source" -c "$source"/libexif/*.c "$source"/libexif/*/*.c
  rm -f "$prefix/lib/libexif.a"
  quietly $host-ar rcs "$prefix/lib/libexif.a" ./*.o
  cp "$source"/libexif/*.h libexif/_stdint.h "$prefix/include/libexif/"
  package_file libexif 0.6.24 -lexif
}

part_googletest() { with_cmake googletest; }

part_curl() {
  with_cmake curl -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DHTTP_ONLY=ON -DCURL_USE_SCHANNEL=ON \
    -DCURL_CA_BUNDLE=none -DCURL_CA_PATH=none -DCURL_USE_LIBSSH2=OFF -DUSE_LIBIDN2=OFF
}

# Of OpenSSL the algorithms alone: TLS is the system's.
part_openssl() {
  unpack openssl
  mkdir -p "$work/build/openssl"
  cd "$work/build/openssl"
  quietly "$work/sources/openssl/Configure" mingw64 --cross-compile-prefix=$host- --prefix="$prefix" --libdir=lib \
    no-asm no-shared no-tests no-engine no-dso no-module no-sock no-legacy \
    no-aria no-bf no-camellia no-cast no-cmp no-cms no-ct no-des no-dsa no-gost no-idea no-md4 no-mdc2 \
    no-ocsp no-rc2 no-rc4 no-rmd160 no-seed no-sm2 no-sm3 no-sm4 no-srp no-srtp no-ts no-whirlpool no-blake2
  quietly make -j"$jobs" build_generated
  quietly make -j"$jobs" libcrypto.a
  cp libcrypto.a "$prefix/lib/"
  mkdir -p "$prefix/include/openssl"
  cp "$work/sources/openssl/include/openssl"/*.h include/openssl/*.h "$prefix/include/openssl/"
}

# Core, Gui and Widgets with JPEG, as shared libraries.
part_qt() {
  unpack qtbase-opensource-src
  mkdir -p "$work/build/qt"
  cd "$work/build/qt"
  # An interrupted configuration is begun anew; an interrupted compilation goes on.
  [ -e configured ] || {
    MAKEFLAGS=-j$jobs quietly "$work/sources/qtbase-opensource-src/configure" -opensource -confirm-license -release -shared \
      -xplatform win32-g++ -device-option CROSS_COMPILE=$host- -prefix "$prefix" -c++std c++17 \
      -no-opengl -no-dbus -no-openssl -no-icu -no-glib -no-iconv \
      -qt-zlib -qt-pcre -qt-libpng -qt-libjpeg -qt-freetype -qt-harfbuzz -qt-doubleconversion \
      -no-feature-network -no-feature-sql -no-feature-testlib -no-feature-xml -no-feature-concurrent \
      -no-feature-tabletevent -no-feature-direct2d -no-feature-vulkan -nomake examples -nomake tests -nomake tools
    touch configured
  }
  quietly make -j"$jobs" sub-src-qmake_all
  quietly make -C src -j"$jobs" sub-corelib
  quietly make -C src -j"$jobs" sub-gui sub-widgets sub-winmain sub-3rdparty-libjpeg sub-platformsupport
  local plugin
  for plugin in imageformats/jpeg platforms/offscreen platforms/windows styles/windowsvista; do
    (cd "src/plugins/$plugin" && quietly "$work/build/qt/bin/qmake" "$work/sources/qtbase-opensource-src/src/plugins/$plugin")
    quietly make -C "src/plugins/$plugin" -j"$jobs" release
    quietly make -C "src/plugins/$plugin" install
  done
  quietly make -C src sub-gui-install_subtargets sub-widgets-install_subtargets sub-winmain-install_subtargets
  quietly make install_mkspecs
  cp bin/qmake "$prefix/bin/"
}

for part in ${*:-$all_parts}; do
  [ ! -e "$work/stamps/$part" ] || continue
  echo "fetchyard: building the part $part"
  : >"$work/$part.log"
  started=$SECONDS
  ("part_$part")
  touch "$work/stamps/$part"
  echo "fetchyard: $part took $((SECONDS - started)) s"
done

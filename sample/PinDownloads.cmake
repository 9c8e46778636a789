# cmake -DIN=<description> -DOUT=<description in the setup folder> -DPROGRAM=<file> -P PinDownloads.cmake
# Writes the description with @SAMPLE_DEPENDENCY_SHA256@ replaced by the SHA-256 of PROGRAM.
file(SHA256 "${PROGRAM}" digest)
file(READ "${IN}" text)
string(REPLACE "@SAMPLE_DEPENDENCY_SHA256@" "${digest}" text "${text}")
file(WRITE "${OUT}" "${text}")

// Reads what the fuzzer makes up as a source of the kind that FUZZ_KIND names.

#include "fuzz/foreignFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QTemporaryDir folder(QFile::exists("/dev/shm") ? "/dev/shm/quadrix-fuzz-XXXXXX"
                                                                : QDir::temp().filePath("quadrix-fuzz-XXXXXX"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    foreignFiles::Read(foreignFiles::FUZZ_KIND(), bytes, folder.path());
    return 0;
}

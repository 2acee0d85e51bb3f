#include "fuzz/Properties.h"

#include "base/DebugLog.h"

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    DebugLog::shared().setPath(QStringLiteral("/dev/null"));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (!Properties::PELLAR_FUZZ_PROPERTY(
            QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)))) {
        std::abort();
    }
    return 0;
}

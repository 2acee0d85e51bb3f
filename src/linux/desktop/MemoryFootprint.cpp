#include "linux/desktop/MemoryFootprint.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <elf.h>
#include <link.h>
#include <malloc.h>
#include <span>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using Segment = ElfW(Phdr);

/// The loader names places by number.
void* at(std::uintptr_t address)
{
    return reinterpret_cast<void*>(address); // NOLINT(performance-no-int-to-ptr)
}

/// Whether the loader has written into the code, which a file cannot bring back.
bool hasRelocatedText(const dl_phdr_info& object, const Segment& dynamic)
{
    const auto* entry = static_cast<const ElfW(Dyn)*>(at(object.dlpi_addr + dynamic.p_vaddr));
    for (; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_TEXTREL ||
            (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_TEXTREL) != 0)) {
            return true;
        }
    }
    return false;
}

void release(const dl_phdr_info& object, const Segment& segment, std::uintptr_t pageSize)
{
    const std::uintptr_t start = (object.dlpi_addr + segment.p_vaddr) & ~(pageSize - 1);
    const std::uintptr_t end = (object.dlpi_addr + segment.p_vaddr + segment.p_filesz) & ~(pageSize - 1);
    if (end > start) {
        madvise(at(start), end - start, MADV_DONTNEED); // a refusal costs nothing but pages
    }
}

int releaseObject(dl_phdr_info* object, std::size_t /*size*/, void* /*data*/)
{
    const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::span segments(object->dlpi_phdr, object->dlpi_phnum);
    const bool isWritten = std::any_of(segments.begin(), segments.end(), [object](const Segment& segment) {
        return segment.p_type == PT_DYNAMIC && hasRelocatedText(*object, segment);
    });
    if (isWritten) {
        return 0;
    }
    for (const Segment& segment : segments) {
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_W) == 0) {
            release(*object, segment, pageSize);
        }
    }
    return 0;
}

} // namespace

void keepHeapSmall()
{
    constexpr int threshold = 128 * 1024; // bytes
    mallopt(M_MMAP_THRESHOLD, threshold);
    mallopt(M_TRIM_THRESHOLD, threshold);
    mallopt(M_ARENA_MAX, 2);
}

void releaseReadOnlyPages()
{
    dl_iterate_phdr(releaseObject, nullptr);
}

void releaseFreedMemory()
{
    malloc_trim(0);
    releaseReadOnlyPages();
}

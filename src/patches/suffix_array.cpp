#include "patches/suffix_array.h"

#if TRELVANE_HAVE_DIVSUFSORT
#include <divsufsort.h>
#endif

std::vector<int32_t> SuffixArray(const unsigned char* bytes, size_t size) {
#if TRELVANE_HAVE_DIVSUFSORT
    static_assert(sizeof(saidx_t) == sizeof(int32_t));
    std::vector<int32_t> order(size);
    if (size > 0) divsufsort(bytes, order.data(), static_cast<saidx_t>(size));
    return order;
#else
    return InducedSuffixArray(bytes, size);
#endif
}

#include "RkUtilities/foundation/SharedUnits.h"

#include <new>

namespace rk {

char16_t* SharedUnits::Allocate(std::size_t capacity)
{
    void* const memory = ::operator new(sizeof(SharedUnits) + (capacity + 1) * sizeof(char16_t));
    auto* const head = new (memory) SharedUnits(capacity);
    return reinterpret_cast<char16_t*>(head + 1);
}

void SharedUnits::Release(const char16_t* units) noexcept
{
    SharedUnits* const head = Of(units);
    // The only owner need not count: nobody else can begin to share what nobody else has.
    if (!IsUnique(units) && head->m_owners.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    head->~SharedUnits();
    ::operator delete(head);
}

}  // namespace rk

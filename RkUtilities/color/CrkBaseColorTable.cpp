#include "RkUtilities/color/CrkBaseColorTable.h"

#include "RkUtilities/color/CrkColorConverter.h"

#include <algorithm>
#include <atomic>
#include <span>

namespace {

constinit std::atomic<CrkBaseColorTable*> currentTable{nullptr};

CString NameIn(CrkBaseColorTable& table, unsigned int argb)
{
    const std::span entries(table.GetColorEntries(), static_cast<std::size_t>(std::max(table.GetColorCount(), 0)));
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [argb](const CrkBaseColorTable::ColorEntry& e) { return e.argb == argb; });
    CString name;
    if (entry != entries.end())
        name.LoadString(entry->key);
    return name;
}

}  // namespace

void CrkBaseColorTable::Set(CrkBaseColorTable* table) noexcept
{
    currentTable.store(table, std::memory_order_release);
}

CrkBaseColorTable* CrkBaseColorTable::Get() noexcept
{
    return currentTable.load(std::memory_order_acquire);
}

CString CrkBaseColorTable::GetColorText(unsigned int color)
{
    CString text;
    if (CrkBaseColorTable* const table = Get())
        text = NameIn(*table, CrkColorConverter::COLORREFToARGB(color));
    if (text.IsEmpty())
        text.Format(u"{%02X,%02X,%02X}", color & 0xFFU, color >> 8U & 0xFFU, color >> 16U & 0xFFU);
    return text;
}

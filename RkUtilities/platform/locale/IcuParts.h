#pragma once

#include "RkUtilities/platform/locale/IcuServices.h"

/// The services that have a source of their own.
namespace rk::platform {

std::unique_ptr<const NameOrder> MakeNameOrder(const std::string& locale);
std::unique_ptr<const NumberFormats> MakeNumberFormats(const std::string& locale);
std::unique_ptr<const DateFormat> MakeDateFormat(const std::string& locale, DateStyle date, DateStyle time);

}  // namespace rk::platform

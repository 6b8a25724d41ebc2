/// @mainpage RkUtilities
///
/// The utility library of a mind-mapping application. Every header is the manual of what it declares; `README.md` shows
/// how to build and use the library.

/// Hash functions of texts and ids, so that they are keys of the standard library's containers.
namespace std {}

/// What has no place in a class: the user's locale, views of texts, state records.
namespace rk {}

/// The namespace of `CAtlException`.
namespace ATL {}

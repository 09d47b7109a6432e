#pragma once

/// Words that products share where they name datasets; nothing in this library reads them.
namespace datasetwords {

inline constexpr wchar_t const * kUserDefined = L"User Defined";
inline constexpr wchar_t const * kDataset = L"Dataset";
inline constexpr wchar_t const * kColumnData = L"columndata";

} // namespace datasetwords

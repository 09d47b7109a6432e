#include "solutionmanager/locations/ExportListing.h"

#include "basekit/diag/Debug.h"

namespace {

constexpr wchar_t kCategory[] = L"SolutionManager";
constexpr int kLevel = 1;

} // namespace

void ExportListing::NothingFound() const { KvroDebug(kCategory, kLevel, m_words.nothing, m_variation); }

void ExportListing::Add(AString const & location) const {
  (m_isFile ? m_files : m_dirs).push_back(location);
  KvroDebug(kCategory, kLevel, m_isFile ? m_words.file : m_words.dir, location, m_variation);
}

#include "solutionmanager/locations/ExportListing.h"

#include "basekit/diag/Debug.h"

namespace {

constexpr wchar_t kCategory[] = L"SolutionManager";
constexpr int kLevel = 1;

} // namespace

ExportListing::ExportListing(wchar_t const * className, bool isFile, std::vector<AString> & files,
                             std::vector<AString> & dirs, AString const & variation)
    : m_where(AString(className) + L"::GetFilesAndDirsToCopyForExportingVariation"), m_isFile(isFile), m_files(files),
      m_dirs(dirs), m_variation(variation) {}

void ExportListing::NothingFound() const {
  KvroDebug(kCategory, kLevel, L"Nothing in %s for exporting variation %s\n", m_where, m_variation);
}

void ExportListing::Add(AString const & location) const {
  (m_isFile ? m_files : m_dirs).push_back(location);
  KvroDebug(kCategory, kLevel, L"Returning %s %s in %s for exporting variation %s\n", m_isFile ? L"file" : L"dir",
            location, m_where, m_variation);
}

// The library as the solution manager uses it: blocks go by packed keys, and a map tells their names in the library.

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "bench/store/BlockInputs.h"
#include "bench/store/IEngine.h"
#include "bench/support/Measure.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <optional>

namespace bench {

namespace {

// About 120 characters, as those of a design with a few variables are.
AString NameOf(std::size_t number) {
  return SolutionVariationKey(3, AString::Format(L"C1=\"%lu.25pF\"; L1=\"4.7nH\"; W1=\"0.35mm\"", number), 5, 7).Pack();
}

class ManagerEngine : public IEngine {
public:
  void Open(std::string const & folder, Purpose purpose) override {
    m_files.emplace(static_cast<IProject *>(nullptr));
    m_files->SetBinaryMode(true);
    m_files->SetLibPath(text::FromUtf8(folder + "/bench.qsol"), purpose == Purpose::Recover
                                                                    ? CStreamioLibrary::kRecoveryMode
                                                                    : CStreamioLibrary::kOrdinaryMode);
  }

  std::size_t List() override {
    std::list<AString> names;
    Check(m_files->IndexKeyList(names, false));
    return names.size();
  }

  void Prepare(std::span<std::size_t const> numbers, std::size_t payload, std::size_t version) override {
    m_inputs.Make(numbers, NameOf, payload, version);
  }
  void PrepareNames(std::span<std::size_t const> numbers) override { m_inputs.MakeNames(numbers, NameOf); }
  void Save(std::size_t place) override { Check(m_files->SaveDefinition(m_inputs.At(place))); }
  void SaveAll() override { Check(m_files->SaveBlocks(m_inputs.Batch())); }
  std::span<double const> Load(std::size_t place) override {
    m_loaded = io::CBlock(m_inputs.Name(place));
    Check(m_files->LoadDefinition(m_loaded));
    return BlockInputs::ValuesIn(m_loaded);
  }
  void DeleteAll() override {
    Check(m_files->DeleteBlocks(std::set<AString>(m_inputs.Names().begin(), m_inputs.Names().end())));
  }
  void Commit() override { Check(m_files->CommitAll(false)); }
  void Rewrite() override { Check(m_files->RewriteLibrary(false)); }

private:
  void Check(CStreamioLibrary::LibIOReturn result) const {
    Require(result == CStreamioLibrary::kLibSuccess, text::ToUtf8(m_files->GetLibraryForDirectAccess().LastError()));
  }

  std::optional<SolutionFileManager> m_files;
  BlockInputs m_inputs;
  io::CBlock m_loaded;
};

} // namespace

std::unique_ptr<IEngine> MakeManagerEngine() { return std::make_unique<ManagerEngine>(); }

} // namespace bench

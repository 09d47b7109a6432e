// The block library by itself.

#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "bench/store/BlockInputs.h"
#include "bench/store/IEngine.h"
#include "bench/support/Measure.h"
#include "viewkit/library/CStreamioLibWritePrivate.h"
#include "viewkit/library/LibraryReader.h"

#include <optional>

namespace bench {

namespace {

AString NameOf(std::size_t number) { return AString::Format(L"SolutionBlock%lu", number); }

class LibraryEngine : public IEngine {
public:
  explicit LibraryEngine(bool isBinary) : m_isBinary(isBinary) {}

  void Open(std::string const & folder, Purpose purpose) override {
    AString const path = text::FromUtf8(folder + "/bench.qsol");
    m_purpose = purpose;
    if (purpose == Purpose::List) {
      m_reader.emplace();
      Require(m_reader->Open(LongFileName(path), false) == 0, "cannot read the library");
      return;
    }
    m_library.emplace();
    m_library->SetBinaryMode(m_isBinary);
    m_library->SetLibPath(path, purpose == Purpose::Recover ? CStreamioLibrary::kRecoveryMode
                                                            : CStreamioLibrary::kOrdinaryMode);
  }

  std::size_t List() override {
    if (m_purpose == Purpose::List)
      return m_reader->List().size();
    std::list<AString> names;
    Check(m_library->PrivIndexKeyList(names));
    return names.size();
  }

  void Prepare(std::span<std::size_t const> numbers, std::size_t payload, std::size_t version) override {
    m_inputs.Make(numbers, NameOf, payload, version);
  }
  void PrepareNames(std::span<std::size_t const> numbers) override { m_inputs.MakeNames(numbers, NameOf); }
  void Save(std::size_t place) override { Check(m_library->SaveDefinition(m_inputs.At(place))); }
  void SaveAll() override { Check(m_library->SaveBlocks(m_inputs.Batch())); }
  std::span<double const> Load(std::size_t place) override {
    m_loaded = io::CBlock(m_inputs.Name(place));
    Check(m_library->LoadDefinition(m_loaded));
    return BlockInputs::ValuesIn(m_loaded);
  }
  void DeleteAll() override { Check(m_library->DeleteBlocks(m_inputs.Names())); }
  void Commit() override { Check(m_library->CommitAll(false)); }
  void Rewrite() override { Check(m_library->RewriteLibrary(false)); }

private:
  void Check(CStreamioLibrary::LibIOReturn result) const {
    Require(result == CStreamioLibrary::kLibSuccess, text::ToUtf8(m_library->LastError()));
  }

  bool m_isBinary;
  Purpose m_purpose = Purpose::Work;
  std::optional<CStreamioLibWritePrivate> m_library;
  std::optional<library::LibraryReader> m_reader;
  BlockInputs m_inputs;
  io::CBlock m_loaded;
};

} // namespace

std::unique_ptr<IEngine> MakeLibraryEngine(bool isBinary) { return std::make_unique<LibraryEngine>(isBinary); }

} // namespace bench

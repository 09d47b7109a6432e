// Project files are blocks in the text form, made to be read and compared by people:
//
//     SolutionProject(Kind = "project", Format = 1)
//     Project {
//       Product = "rfcircuit"
//       ...
//     }
//     Checksum("9a3b0c11")
//
// The first line never changes its form, so that any version can tell what it has met.
#include "desktop/project/ProjectFile.h"

#include "basekit/file/IFileSystem.h"
#include "basekit/io/BlockCodec.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/io/Checksum.h"
#include "desktop/Error.h"

#include <cerrno>
#include <fmt/format.h>

namespace desktop {

namespace {

constexpr long kFormat = 1;
constexpr std::string_view kMagic = "SolutionProject(";
constexpr std::string_view kTrailer = "\nChecksum(";

AString const kHead(L"SolutionProject");
AString const kKind(L"Kind");
AString const kFormatItem(L"Format");
AString const kRecord(L"Project");
AString const kChecksum(L"Checksum");
AString const kProduct(L"Product");
AString const kGeneration(L"Generation");
AString const kDesignName(L"DesignName");
AString const kDesignID(L"DesignID");
AString const kSource(L"Source");
AString const kSimValueCache(L"SimValueCache");

wchar_t const * KindName(ProjectFileKind kind) { return kind == ProjectFileKind::kProject ? L"project" : L"autosave"; }

AString ChecksumText(std::string_view bytes) { return text::FromUtf8(fmt::format("{:08x}", io::Checksum(bytes))); }

void Append(io::CBlock_item const & item, std::string & bytes) {
  if (!io::EncodeItem(item, io::Form::Text, io::kExactDigits, bytes))
    throw Error(ErrorKind::kFailed, L"the project is nested too deeply to be written");
  if (!bytes.ends_with('\n'))
    bytes += '\n';
}

[[noreturn]] void Refuse(LongFileName const & file, AString const & whatAndRemedy) {
  throw Error(ErrorKind::kProject, file.FilePath() + L": " + whatAndRemedy);
}

AString ThingOf(ProjectFileKind kind) {
  return kind == ProjectFileKind::kProject ? L"the project file" : L"the autosave";
}

[[noreturn]] void RefuseCut(LongFileName const & file, ProjectFileKind kind) {
  Refuse(file, ThingOf(kind) + L" is cut off; put back a copy of it");
}

[[noreturn]] void RefuseDamaged(LongFileName const & file, ProjectFileKind kind) {
  Refuse(file, ThingOf(kind) + L" is damaged; put back a copy of it");
}

// The first item tells kind and version, whatever comes behind it.
void CheckHead(io::CBlock_func const & head, ProjectFileKind kind, LongFileName const & file) {
  AString kindName;
  long format = 0;
  head >> io::named(kKind, kindName);
  head >> io::named(kFormatItem, format);
  if (!head.Found() || format < 1)
    RefuseDamaged(file, kind);
  if (format > kFormat)
    Refuse(file, ThingOf(kind) + AString::Format(L" has format %d, and this program reads formats up to %d; use the "
                                                 L"program that wrote it, or a newer one",
                                                 format, kFormat));
  if (kindName != KindName(kind))
    Refuse(file, AString::Format(L"this is a file of kind '%s', where one of kind '%s' is wanted; name another file",
                                 kindName, AString(KindName(kind))));
}

bool TakeBlock(io::CBlock const & from, io::CBlock & into) {
  from >> into;
  return from.Found();
}

} // namespace

std::string EncodeProject(ProjectRecord const & record, ProjectFileKind kind) {
  io::CBlock_func head(kHead);
  head << io::named(kKind, KindName(kind)) << io::named(kFormatItem, kFormat);
  io::CBlock sources(kSource);
  WriteSourceFiles(record.sources, sources);
  io::CBlock block(kRecord);
  block << io::named(kProduct, record.productName) << io::named(kGeneration, record.generation)
        << io::named(kDesignName, record.designName) << io::named(kDesignID, record.designID) << sources << record.ids
        << record.design << record.module << record.sourceBase << record.edits;
  for (io::CBlock const * const part : {&record.reports, &record.ports, &record.connections, &record.pendingTexts})
    if (!part->Empty())
      block << *part;
  if (!record.simValueCache.empty())
    block << io::named(kSimValueCache, record.simValueCache);
  std::string bytes;
  Append(head, bytes);
  Append(block, bytes);
  io::CBlock_func checksum(kChecksum);
  checksum << ChecksumText(bytes);
  Append(checksum, bytes);
  return bytes;
}

std::string ReadProjectBytes(LongFileName const & file) {
  std::unique_ptr<file::IFile> opened;
  file::FileInfo info;
  auto status = file::FileSystem().Open(file, file::OpenMode::Read, opened);
  if (status.Error() == ENOENT || status.Error() == ENOTDIR)
    Refuse(file, L"there is no such project; check the name, or make a project with 'solvedesk new'");
  if (status.Ok())
    status = opened->Describe(info);
  std::string head(kMagic.size(), '\0');
  std::size_t got = 0;
  if (status.Ok())
    status = opened->Read(0, head, got);
  head.resize(got);
  // Whatever else stands there may be of any size.
  std::string bytes(status.Ok() && head == kMagic ? info.length : 0, '\0');
  if (!bytes.empty())
    status = opened->Read(0, bytes, got);
  if (!status.Ok())
    Refuse(file, AString(L"can't be read (") + status.Text() + L"); get permission to read it");
  if (head != kMagic)
    return head;
  bytes.resize(got);
  return bytes;
}

ProjectRecord DecodeProject(std::string const & bytes, ProjectFileKind kind, LongFileName const & file) {
  if (!bytes.starts_with(kMagic)) {
    if (kMagic.starts_with(bytes))
      RefuseCut(file, kind);
    Refuse(file, L"this is no project file; name a file that 'solvedesk new' made");
  }
  std::size_t at = 0;
  io::CBlock_ptr<io::CBlock_func> const head(io::DecodeItemAt(bytes, at));
  if (!head)
    bytes.find('\n') == std::string::npos ? RefuseCut(file, kind) : RefuseDamaged(file, kind);
  CheckHead(*head, kind, file);
  auto const trailer = bytes.rfind(kTrailer);
  if (trailer == std::string::npos)
    RefuseCut(file, kind);
  std::size_t trailerAt = trailer + 1;
  std::string_view const checked = std::string_view(bytes).substr(0, trailerAt);
  io::CBlock_ptr<io::CBlock_func> const checksum(io::DecodeItemAt(bytes, trailerAt));
  if (!checksum)
    RefuseCut(file, kind);
  AString stored;
  auto place = checksum->begin();
  io::CBlock_ptr<io::CBlock> const block(io::DecodeItemAt(bytes, at));
  ProjectRecord record;
  bool const isWhole = checksum->QueryUnamedValues(place, stored) && stored == ChecksumText(checked) && block;
  if (!isWhole)
    RefuseDamaged(file, kind);
  io::CBlock sources(kSource);
  *block >> io::named(kProduct, record.productName) >> io::named(kGeneration, record.generation) >>
      io::named(kDesignName, record.designName) >> io::named(kDesignID, record.designID);
  bool const isComplete = TakeBlock(*block, sources) && ReadSourceFiles(sources, record.sources) &&
                          TakeBlock(*block, record.ids) && TakeBlock(*block, record.design) &&
                          TakeBlock(*block, record.module) && !record.designName.empty();
  if (!isComplete)
    RefuseDamaged(file, kind);
  TakeBlock(*block, record.sourceBase);
  TakeBlock(*block, record.edits);
  TakeBlock(*block, record.reports);
  TakeBlock(*block, record.ports);
  TakeBlock(*block, record.connections);
  TakeBlock(*block, record.pendingTexts);
  *block >> io::named(kSimValueCache, record.simValueCache);
  return record;
}

} // namespace desktop

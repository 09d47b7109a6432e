#include "solutionmanager/extraction/SvCacheFile.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/IFileSystem.h"
#include "basekit/file/LongFileName.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/CToken_istream.h"
#include "basekit/io/CToken_ostream.h"
#include "basekit/io/StreamFlags.h"

AString const svcachefile::kTopBlockName(L"SolutionManagerSimValueCaches");

AString const svcachefile::kVocabulary[17] = {
    L"svcache",    L"svc",           L"CacheHeaderFile", L"DesignID",          L"SimValueCache",
    L"DesignMap",  L"SolutionMap",   L"ContextMap",      L"ReportTypeSolnDef", L"ReportType",
    L"VersionMap", L"MajorVVMap",    L"MinorVVMap",      L"MajorVariation",    L"SolutionID",
    L"VersionID",  L"MinorCacheFile"};

AString svcachefile::ExtractorBlockName(long solutionID) { return AString::Format(L"SimDE_%d", solutionID); }

bool svcachefile::Read(AString const & path, io::CBlock & block) {
  if (!LFN_Exists(LongFileName(path)))
    return false;
  io::CToken_istream stream(path, io::kStreamRead);
  if (stream.fail())
    return false;
  io::CBlock top(kTopBlockName);
  stream >> top;
  bool const isWhole = !stream.fail();
  stream.Close();
  if (isWhole)
    block = std::move(top);
  return isWhole;
}

bool svcachefile::Write(AString const & path, io::CBlock const & block) {
  LongFileName const beside(path + L".new");
  io::CToken_ostream stream(beside.FilePath(), io::kStreamWrite);
  if (stream.fail())
    return false;
  stream << block;
  stream.Close();
  if (!stream.fail() && file::FileSystem().Rename(beside, LongFileName(path)).Ok())
    return true;
  // The failure is told; what is left would be written over.
  static_cast<void>(file::FileSystem().RemoveFile(beside));
  return false;
}

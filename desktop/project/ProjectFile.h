#pragma once

#include "basekit/io/CBlock.h"
#include "desktop/project/SourceFiles.h"

#include <string>

namespace desktop {

/// What a project file holds, and an autosave beside it.
struct ProjectRecord {
  AString productName;
  AString designName;
  long designID = 0;
  /// Grows with every save.  An autosave bears that of the project file that it continues.
  long generation = 0;
  SourceFiles sources;
  /// The next free ID of the design, so that a lost library never leads to an ID given out twice.
  io::CBlock ids{L"IDs"};
  /// The design's variables.
  io::CBlock design{L"Design"};
  /// What the solution manager wrote of itself.
  io::CBlock module{L"Module"};
  /// What the source said when it was read; empty in files from before there was such a block.
  io::CBlock sourceBase{L"SourceBase"};
  /// Why solved data is stale; likewise.
  io::CBlock edits{L"Edits"};
  /// What the user wants to see; empty, and not written, without a report.
  io::CBlock reports{L"Reports"};
  /// What ports are shown with; likewise.
  io::CBlock ports{L"Ports"};
  /// What comes from other projects; likewise.
  io::CBlock connections{L"Connections"};
  /// Tells the cache of sim values that was written with this project file; empty without one, and in an autosave.
  AString simValueCache;
  /// Of an autosave that was written before an edit changes the texts of variations: what leads back to the texts that
  /// this design has, wherever the edit was cut off.
  io::CBlock pendingTexts{L"PendingTexts"};
};

enum class ProjectFileKind { kProject, kAutosave };

/// The bytes of a file: kind and format version, the record, a checksum of both.  Equal records give equal bytes.
std::string EncodeProject(ProjectRecord const & record, ProjectFileKind kind);

/// The whole content; an Error of kind kProject when the file is missing or can't be read.
std::string ReadProjectBytes(LongFileName const & file);
/// An Error of kind kProject when the bytes are of another kind, of a newer version, cut off or damaged.
ProjectRecord DecodeProject(std::string const & bytes, ProjectFileKind kind, LongFileName const & file);

} // namespace desktop

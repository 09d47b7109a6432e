#pragma once

#include "basekit/file/LongFileName.h"
#include "basekit/text/AString.h"

#include <cstdint>
#include <vector>

namespace desktop {

class Session;

struct Attachment {
  AString name; ///< "FOLDER/NAME", as the user chose it
  LongFileName path;
  std::uint64_t size = 0;
  bool isSaved = false;
  bool isDetached = false; ///< since the last save; its file stays until the next one
  bool isMissing = false;  ///< its file was taken away by other means
};

/// Files that users attach to a project, as managed files of its design: a copy that a save makes permanent and a
/// discard takes back.  The name that the user chose is the folder of the copy, below "attachments"; the copy itself
/// has a name of its own.  Failures are desktop::Error.
class Attachments {
public:
  explicit Attachments(Session & session) : m_session(session) {}

  /// By name; of a session that only reads the saved ones.
  std::vector<Attachment> List() const;
  /// Refuses names that lead elsewhere, that are no names, or that are there already.
  Attachment Attach(LongFileName const & file, AString const & name);
  void Detach(AString const & name);

private:
  Session & m_session;
};

} // namespace desktop

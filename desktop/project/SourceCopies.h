#pragma once

#include "desktop/project/SourceFiles.h"

namespace desktop {

class Session;

/// Copies of a project's source in another folder, so that what is solved from it can be solved from there.  The file
/// that was named first comes to lie in the folder, all others from it as they do from the original.
class SourceCopies {
public:
  /// Copies all files or none: where copies would not do, nothing of them stays and WhyNot tells it.  A copy that
  /// can't be written is an Error of kind kStorage.
  SourceCopies(Session & session, LongFileName const & folder);

  /// As a project in the folder knows them; empty where there are none.
  SourceFiles const & Files() const { return m_copies; }
  /// One line for people; empty when the files are there.
  AString const & WhyNot() const { return m_whyNot; }

private:
  bool CopyAll();
  bool CopyFile(SourceFile const & file);
  bool IsWritten(LongFileName const & copy) const;
  bool AreReadAlike();
  void TakeBack();
  bool GiveUp(AString const & why);

  Session & m_session;
  LongFileName m_folder;
  SourceFiles m_copies;
  std::vector<LongFileName> m_written;
  AString m_whyNot;
};

} // namespace desktop

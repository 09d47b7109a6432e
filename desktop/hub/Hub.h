#pragma once

#include "desktop/hub/Connection.h"

namespace desktop {

class Session;
struct FetchedData;

/// What a connection is to bring.
struct ConnectionRequest {
  AString name;
  /// The path of the project file, with or without its extension.
  AString project;
  AString setup;     ///< empty: the only one that the project has
  AString variation; ///< empty: the point at which the source's variables stand, also at a later refresh
};

/// How a connection stands.
struct ConnectionState {
  enum class Kind {
    kCurrent,       ///< the file holds what the source has
    kSourceChanged, ///< the source has other data, or none any more
    kSourceMissing, ///< the source's project is not there, or can't be read
    kFileChanged    ///< the file is gone, can't be read, or is not what the connection wrote
  };
  Connection connection;
  Kind kind = Kind::kCurrent;
  AString why;         ///< empty for a current one
  bool isUsed = false; ///< the project's source reads the file
};

/// What a refresh did.
struct RefreshedConnection {
  AString name;
  bool isChanged = false;
};

/// Connects the design of an open project to designs of other projects: solved data of these, as they were saved last,
/// comes as a file that lies beside the project's source and that the source names.  Each operation that changes
/// something is one edit: the file, the connection and what becomes stale, and one undo takes all of it back.  Of the
/// calls of ISolutionMgrForHubIntegration the source's manager gets that for the data, that of the project the others.
/// Failures are desktop::Error, with everything as it was.  Notices are for people, one line each.
class Hub {
public:
  explicit Hub(Session & session) : m_session(session) {}

  /// Refused: a name that is taken or no plain word, a file of somebody else in the way, a circle, a source that is in
  /// use, can't be read, or has no such data.
  Connection Connect(ConnectionRequest const & request, std::vector<AString> & notices);
  /// Takes the present data of one connection, or of all without a name.  All of them or none.
  std::vector<RefreshedConnection> Refresh(AString const & name, std::vector<AString> & notices);
  /// The file stays, as one of the user's.
  void Disconnect(AString const & name);
  /// Also of a project that is open for reading.
  std::vector<ConnectionState> States() const;

  /// A name becomes that of a file and a word of the source.
  static void RefuseNoPlainName(AString const & name);
  /// A file of other content that is there already.
  static void RefuseForeignFile(LongFileName const & file, std::string const & content);

private:
  Connection const & Find(AString const & name) const;
  LongFileName FolderOfData() const;
  bool IsUsed(Connection const & connection) const;
  ConnectionState StateOf(Connection const & connection) const;
  bool Refresh(Connection const & connection, std::vector<AString> & notices);
  void RefuseTakenName(AString const & name) const;

  Session & m_session;
};

} // namespace desktop

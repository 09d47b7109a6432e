#include "desktop/hub/Hub.h"

#include "CoreInterfaces/solution/ISolutionMgrForHubIntegration.h"
#include "basekit/file/FileOperations.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/Checksum.h"
#include "basekit/text/Utf8.h"
#include "desktop/Error.h"
#include "desktop/command/Editor.h"
#include "desktop/command/WordOfCommand.h"
#include "desktop/design/Design.h"
#include "desktop/hub/ConnectionSource.h"
#include "desktop/hub/FileExchange.h"
#include "desktop/product/IDesktopProduct.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Project.h"
#include "desktop/project/Session.h"

#include <algorithm>
#include <random>

namespace desktop {

namespace {

AString NewGuid() {
  std::random_device random;
  auto const part = [&random] { return static_cast<unsigned>(random() & 0xffffu); };
  unsigned const p[] = {part(), part(), part(), part(), part(), part(), part(), part()};
  return AString::Format(L"{%04x%04x-%04x-%04x-%04x-%04x%04x%04x}", p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
}

AString PathFrom(LongFileName const & folder, LongFileName const & file) {
  AString const path = LFN_AbsolutePath(file).FilePath();
  AString const & start = folder.FilePath();
  return !start.empty() && path.StartsWith(start) && path.size() > start.size() ? path.substr(start.size()) : path;
}

SourceFile FileOf(LongFileName const & path, std::string const & content, LongFileName const & folder) {
  return {PathFrom(folder, path), content.size(), io::Checksum(content)};
}

bool HoldsIt(SourceFile const & file, std::string const & content) {
  return file.size == content.size() && file.checksum == io::Checksum(content);
}

AString DataText(Connection const & connection) {
  AString const point = connection.variation.empty() ? AString() : AString(L" at ") + connection.variation;
  return connection.project + L": " + connection.setup + point + L", as of " + connection.date;
}

/// Asks the manager that takes the network; gives the name of the file that is to hold it.
AString Accepted(Session & session, AString const & thing, bool isOffered, bool isDone, io::CBlock const & out) {
  if (!isOffered)
    throw Error(ErrorKind::kUsage, session.GetProject().GetFile().FilePath() + L": its product " +
                                       session.GetProduct().GetName() +
                                       L" takes no S-parameters; use a project of another product");
  if (!isDone)
    throw Error(ErrorKind::kFailed, thing + L": " + RefusalOf(out));
  return TransferFileOf(out);
}

io::CBlock BlockOf(TransferredNetwork const & network) {
  io::CBlock in(L"In");
  network.Write(in);
  return in;
}

} // namespace

LongFileName Hub::FolderOfData() const { return LongFileName(m_session.GetProject().GetSourceFile().DirPath()); }

Connection const & Hub::Find(AString const & name) const {
  AString known;
  for (Connection const & connection : m_session.GetProject().GetConnections()) {
    if (AString::MatchNoCase(connection.name, name))
      return connection;
    known += (known.empty() ? AString() : AString(L", ")) + connection.name;
  }
  throw Error(ErrorKind::kUsage, name + L": the project has no connection of that name; it has: " +
                                     (known.empty() ? AString(L"none") : known));
}

void Hub::RefuseNoPlainName(AString const & name) {
  constexpr std::size_t kLongest = 60;
  auto const isPlain = [](wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_' || c == L'-';
  };
  if (name.empty() || name.size() > kLongest || !std::all_of(name.begin(), name.end(), isPlain))
    throw Error(ErrorKind::kUsage,
                AString(L"'") + name +
                    L"': a connection's name has 1 to 60 letters, digits, '_' and '-'; give such one");
}

void Hub::RefuseTakenName(AString const & name) const {
  for (Connection const & connection : m_session.GetProject().GetConnections())
    if (AString::MatchNoCase(connection.name, name))
      throw Error(ErrorKind::kUsage, name + L": the project has a connection of that name; refresh it, or give another "
                                            L"name");
}

void Hub::RefuseForeignFile(LongFileName const & file, std::string const & content) {
  auto const present = BytesOf(file);
  if (present && *present != content)
    throw Error(ErrorKind::kUsage, file.FilePath() + L": there is such a file already, and no connection wrote it; "
                                                     L"connect under another name, or take the file away");
}

Connection Hub::Connect(ConnectionRequest const & request, std::vector<AString> & notices) {
  m_session.RefuseWhenReadOnly();
  RefuseNoPlainName(request.name);
  RefuseTakenName(request.name);
  Project & project = m_session.GetProject();
  LongFileName const source = Project(request.project).GetFile();
  if (AString const circle = CircleThrough(project.GetFile(), source); !circle.empty())
    throw Error(ErrorKind::kUsage, source.FilePath() + L": the connections would go in a circle: " + circle +
                                       L"; disconnect one of them first");
  RefuseProjectInUse(source);
  FetchedData const fetched = FetchData({source, request.setup, request.variation, request.name});
  Connection connection{request.name,
                        PathFrom(project.GetFolder(), source),
                        fetched.setup,
                        request.variation,
                        SourceBase::Of({}, {}).date,
                        {},
                        {TransferredNetwork::kTransferType, NewGuid()}};
  io::CBlock out(L"Out");
  bool isDone = false;
  bool const isOffered =
      m_session.GetManager().GetISolutionMgrForHubIntegrationForEdit()->OnAcquireTransferDataConnection2(
          request.name, &m_session.GetDesign().NominalInstance(), connection.identifier, BlockOf(fetched.network), out,
          isDone);
  LongFileName const file = FolderOfData() + Accepted(m_session, source.FilePath(), isOffered, isDone, out);
  std::string const content = text::ToUtf8(fetched.network.text);
  RefuseForeignFile(file, content);
  connection.file = FileOf(file, content, project.GetFolder());
  Connections connections = project.GetConnections();
  connections.push_back(connection);
  m_session.GetEditor().ChangeConnections(
      AString(L"connect ") + WordOfCommand(request.project) + L" --as " + request.name, connections,
      std::make_shared<FileExchange>(file, content),
      {AString(L"connection ") + connection.name, AString(), DataText(connection)}, notices);
  return connection;
}

bool Hub::Refresh(Connection const & known, std::vector<AString> & notices) {
  Project & project = m_session.GetProject();
  LongFileName const source = known.ProjectIn(project.GetFolder());
  RefuseProjectInUse(source);
  FetchedData const fetched = FetchData({source, known.setup, known.variation, known.name});
  LongFileName const file = known.file.PathIn(project.GetFolder());
  io::CBlock in = BlockOf(fetched.network);
  WriteTransferFile(in, file.NameAndExtension());
  io::CBlock out(L"Out");
  bool isDone = false;
  bool const isOffered = m_session.GetManager().GetISolutionMgrForHubIntegrationForEdit()->OnRefreshTransferData2(
      fetched.setup, known.name, &m_session.GetDesign().NominalInstance(), known.identifier, in, out, isDone);
  static_cast<void>(Accepted(m_session, source.FilePath(), isOffered, isDone, out));
  std::string const content = text::ToUtf8(fetched.network.text);
  if (HoldsIt(known.file, content) && BytesOf(file) == content)
    return false;
  Connection refreshed = known;
  refreshed.file = FileOf(file, content, project.GetFolder());
  refreshed.date = SourceBase::Of({}, {}).date;
  Connections connections = project.GetConnections();
  std::replace_if(
      connections.begin(), connections.end(), [&known](Connection const & other) { return other.name == known.name; },
      refreshed);
  m_session.GetEditor().ChangeConnections(
      AString(L"refresh ") + known.name, connections, std::make_shared<FileExchange>(file, content),
      {AString(L"connection ") + known.name, DataText(known), DataText(refreshed)}, notices);
  return true;
}

std::vector<RefreshedConnection> Hub::Refresh(AString const & name, std::vector<AString> & notices) {
  m_session.RefuseWhenReadOnly();
  Connections const connections = name.empty() ? m_session.GetProject().GetConnections() : Connections{Find(name)};
  std::vector<RefreshedConnection> refreshed;
  m_session.GetEditor().RunGroup(AString(L"refresh") + (name.empty() ? AString() : AString(L" ") + name), [&] {
    for (Connection const & connection : connections)
      refreshed.push_back({connection.name, Refresh(connection, notices)});
  });
  return refreshed;
}

void Hub::Disconnect(AString const & name) {
  m_session.RefuseWhenReadOnly();
  Connection const connection = Find(name);
  io::CBlock const in(L"In");
  io::CBlock out(L"Out");
  bool isDone = false;
  // What the product makes of it hinders nobody: the connection goes.
  m_session.GetManager().GetISolutionMgrForHubIntegrationForEdit()->OnReleaseTransferDataConnection2(
      connection.name, &m_session.GetDesign().NominalInstance(), connection.identifier, in, out, isDone);
  Connections connections = m_session.GetProject().GetConnections();
  std::erase_if(connections, [&](Connection const & other) { return other.name == connection.name; });
  std::vector<AString> notices;
  m_session.GetEditor().ChangeConnections(AString(L"disconnect ") + connection.name, connections, nullptr,
                                          {AString(L"connection ") + connection.name, DataText(connection), AString()},
                                          notices);
}

bool Hub::IsUsed(Connection const & connection) const {
  auto const & files = m_session.GetProject().GetSourceFiles();
  return std::any_of(files.begin(), files.end(),
                     [&](SourceFile const & file) { return file.path == connection.file.path; });
}

namespace {

using StateKind = ConnectionState::Kind;

/// Why the file isn't what it is to be; empty when it is.
AString FaultOf(LongFileName const & file, std::string const & content) {
  try {
    return BytesOf(file) == content ? AString()
                                    : file.FilePath() + L": is gone, or not what the connection wrote; refresh puts it "
                                                        L"back";
  } catch (Error const & error) {
    return text::FromUtf8(error.what());
  }
}

} // namespace

ConnectionState Hub::StateOf(Connection const & connection) const {
  LongFileName const folder = m_session.GetProject().GetFolder();
  LongFileName const file = connection.file.PathIn(folder);
  ConnectionState state{connection, ConnectionState::Kind::kCurrent, {}, IsUsed(connection)};
  auto const isNow = [&state](StateKind kind, AString const & why) {
    state.kind = kind;
    state.why = why;
  };
  try {
    FetchedData const fetched =
        FetchData({connection.ProjectIn(folder), connection.setup, connection.variation, connection.name});
    std::string const content = text::ToUtf8(fetched.network.text);
    if (!HoldsIt(connection.file, content))
      isNow(StateKind::kSourceChanged, L"the source has other data now; refresh takes it");
    else if (AString const fault = FaultOf(file, content); !fault.empty())
      isNow(StateKind::kFileChanged, fault);
  } catch (Error const & error) {
    bool const isMissing = error.Kind() == ErrorKind::kProject;
    isNow(isMissing ? StateKind::kSourceMissing : StateKind::kSourceChanged, text::FromUtf8(error.what()));
  }
  return state;
}

std::vector<ConnectionState> Hub::States() const {
  std::vector<ConnectionState> states;
  for (Connection const & connection : m_session.GetProject().GetConnections())
    states.push_back(StateOf(connection));
  return states;
}

} // namespace desktop

#pragma once

/// Gives out IDs, each once.
class IIDServer {
public:
  virtual long FetchNextUniqueID() = 0;
  virtual ~IIDServer();
};

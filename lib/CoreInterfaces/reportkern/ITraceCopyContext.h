#pragma once

/// Told while traces are copied; nothing of it is asked here.
class ITraceCopyContext {
protected:
  ~ITraceCopyContext() = default;
};

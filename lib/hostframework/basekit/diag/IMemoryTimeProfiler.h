#pragma once

/// Records named spans of large operations.  Labels nest; Begin and End come in pairs.
class IMemoryTimeProfiler {
public:
  virtual ~IMemoryTimeProfiler();
  virtual void Begin(char const * label) = 0;
  virtual void End(char const * label) = 0;

  /// The installed profiler; at first one that records nothing.
  static IMemoryTimeProfiler & Instance();
  /// Installs a profiler (null: the first one) and gives back the former; not owned.
  static IMemoryTimeProfiler * SetInstance(IMemoryTimeProfiler * profiler);
};

/// Begins a span and ends it on every way out, at the profiler that it began with.
class MemoryTimeProfilerScope {
public:
  explicit MemoryTimeProfilerScope(char const * label) : m_label(label), m_profiler(IMemoryTimeProfiler::Instance()) {
    m_profiler.Begin(m_label);
  }
  ~MemoryTimeProfilerScope() { m_profiler.End(m_label); }
  MemoryTimeProfilerScope(MemoryTimeProfilerScope const &) = delete;
  MemoryTimeProfilerScope & operator=(MemoryTimeProfilerScope const &) = delete;

private:
  char const * m_label;
  IMemoryTimeProfiler & m_profiler;
};

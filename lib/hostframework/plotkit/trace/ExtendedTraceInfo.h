#pragma once

#include "basekit/io/CBlock.h"

/// What a report keeps with a trace: items that are carried and saved, and read by nobody here.
class ExtendedTraceInfo {
public:
  explicit ExtendedTraceInfo(io::CBlock const & content) : m_content(content) {}

  io::CBlock const & GetContent() const { return m_content; }
  void SetContent(io::CBlock const & content) { m_content = content; }

private:
  io::CBlock m_content;
};

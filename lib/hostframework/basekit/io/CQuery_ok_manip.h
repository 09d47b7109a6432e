#pragma once

namespace io {

class CBlock_func;

/// Records whether the last query on a function item succeeded:  func >> named(L"ID", id) >> CQuery_ok_manip(ok);
class CQuery_ok_manip {
public:
  explicit CQuery_ok_manip(bool & ok) : m_ok(&ok) {}

private:
  friend class CBlock_func;
  bool * m_ok;
};

} // namespace io

#pragma once

#include <string>

namespace desktop::page {

/// Writes the path of a curve: samples in one column of pixels that follow each other become the first, the least, the
/// most and the last of them.  A value that is no number parts the path; a sample alone becomes a dot.
class SvgPen {
public:
  void To(double x, double y);
  void Lift();
  /// The path so far; the pen is lifted.
  std::string Path();

private:
  void Flush();
  void Write(double x, double y);

  std::string m_path;
  bool m_hasColumn = false;
  long long m_column = 0;
  int m_inColumn = 0;
  double m_firstX = 0.0, m_first = 0.0, m_least = 0.0, m_most = 0.0, m_lastX = 0.0, m_last = 0.0;
  int m_run = 0; ///< points written since the pen was lifted
};

} // namespace desktop::page

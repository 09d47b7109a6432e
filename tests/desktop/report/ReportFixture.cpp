#include "tests/desktop/report/ReportFixture.h"

#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"

namespace support {

ReportTest::Rows ReportTest::RowsOf(desktop::ReportTable const & table) {
  Rows rows(table.RowCount());
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (std::size_t column = 0; column < table.Columns().size(); ++column) {
      auto const number = table.At(row, column);
      AString cell = number ? text::FromUtf8(text::ShortestReal(number->real())) : table.TextAt(row, column);
      if (number && table.Columns()[column].isComplex)
        cell += AString(L",") + text::FromUtf8(text::ShortestReal(number->imag()));
      rows[row].push_back(cell.empty() ? AString(L"-") : cell);
    }
  return rows;
}

} // namespace support

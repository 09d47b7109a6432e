#include "tests/desktop/report/ReportFixture.h"

#include "basekit/io/CNamed_value_manip.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/ProductSolutionManager.h"
#include "tests/support/FaultyFileSystem.h"

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

std::unique_ptr<FaultyFileSystem> ReportTest::ReopenCounted(Access access) {
  m_session.reset();
  auto files = std::make_unique<FaultyFileSystem>();
  files->CountReads(true);
  m_session = Open(access);
  return files;
}

void ReportTest::SolveLarge(AString const & variation, std::vector<double> const & values, std::size_t bytes) {
  BaseSolution & solution = SolutionOf(*m_session);
  io::CBlock_ptr<io::CBlock> const block(
      new io::CBlock(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                          solution.GetVersionID())
                         .Pack()));
  io::CBlock_func data(L"Values");
  for (double const value : values)
    data << value;
  *block << data << io::named(L"Padding", AString(std::wstring(bytes, L'x')));
  io::CBlock batch;
  batch << block;
  ASSERT_EQ(m_session->GetManager().SaveBlocks(batch), CStreamioLibrary::kLibSuccess);
  solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &m_session->GetManager()), false);
}

} // namespace support

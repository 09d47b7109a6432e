#include "desktop/report/ReportCheck.h"

#include "basekit/value/Variable.h"
#include "basekit/value/expression/SyntaxParser.h"
#include "basekit/value/variation/VariationText.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/design/NumberWord.h"
#include "desktop/message/NameList.h"
#include "desktop/project/Session.h"
#include "desktop/report/ExpressionWords.h"
#include "desktop/report/ReportDefinition.h"

#include <algorithm>

namespace desktop {
namespace {

constexpr std::size_t kLongestName = 100;

bool IsControl(wchar_t letter) { return letter < L' ' || letter == L'\x7f'; }

[[noreturn]] void Refuse(ReportDefinition const & report, AString const & problem) {
  throw Error(ErrorKind::kUsage, L"report " + ShortName(report.name) + L": " + problem);
}

void RefuseName(AString const & name) {
  if (name.empty() || name != name.Trimmed())
    throw Error(ErrorKind::kUsage,
                AString(L"'") + name + L"': can't be the name of a report; give one without blanks at its ends");
  std::wstring_view const letters = name.View();
  if (std::any_of(letters.begin(), letters.end(), IsControl))
    throw Error(ErrorKind::kUsage,
                L"report add: the name holds a line break or another control character; leave it out");
  if (name.size() > kLongestName)
    throw Error(ErrorKind::kUsage,
                L"report " + ShortName(name) +
                    AString::Format(L": the name has %ld characters; %ld are the most", static_cast<long>(name.size()),
                                    static_cast<long>(kLongestName)));
}

void RefuseExpression(ReportDefinition const & report, AString const & text) {
  expr::SyntaxTree tree;
  expr::Error error;
  if (!expr::ReadSyntax(text, tree, error))
    Refuse(report, L"'" + ShortName(text) + L"' is no expression: " + error.Text());
}

bool Runs(ReportDefinition const & report, AString const & variable) {
  std::vector<AString> running = ExpressionWords(report.x);
  running.insert(running.end(), report.over.begin(), report.over.end());
  return std::any_of(running.begin(), running.end(),
                     [&variable](AString const & name) { return AString::MatchNoCase(name, variable); });
}

void RefuseVariation(Design const & design, ReportDefinition const & report) {
  VariationText const variation(report.variation);
  if (variation.Pairs().empty())
    Refuse(report, L"'" + ShortName(report.variation) + L"' is no variation; write it as in \"C1=1.2pF; L1=4nH\"");
  for (VariationText::Pair const & pair : variation.Pairs())
    if (Variable const * const variable = design.FindVariable(AString(pair.name))) {
      if (Runs(report, variable->GetName()))
        Refuse(report, L"'" + variable->GetName() + L"' runs over its solved values, so that it can't stand at " +
                           AString(pair.text) + L" as well; leave one of the two out");
      RefuseNoNumber(design, *variable, pair.text);
    }
}

} // namespace

void RefuseNoNumber(Design const & design, Variable const & variable, std::wstring_view value) {
  VariationText const nominal(design.GetVariation());
  VariationText::Pair const * const own = nominal.Find(variable.GetName().View());
  if (own && own->isNumber && own->text != value)
    ReadNumberWord(AString(value), variable.GetName());
}

void RefuseUnshowable(Session & session, ReportDefinition const & report) {
  RefuseName(report.name);
  bool const hasEmpty =
      std::any_of(report.y.begin(), report.y.end(), [](AString const & text) { return text.Trimmed().empty(); });
  if (report.y.empty() || hasEmpty)
    Refuse(report, L"has no y; give at least one expression");
  for (AString const & y : report.y)
    RefuseExpression(report, y);
  if (!report.x.empty())
    RefuseExpression(report, report.x);
  if (!report.variation.empty())
    RefuseVariation(session.GetDesign(), report);
}

} // namespace desktop

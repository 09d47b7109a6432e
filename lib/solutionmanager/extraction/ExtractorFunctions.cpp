// Which functions reports offer for a quantity.

#include "solutionmanager/extraction/BaseSimDataExtractor.h"
#include "solutionmanager/extraction/FunctionLists.h"

int BaseSimDataExtractor::GetFunctionNames(std::vector<AString> & names, ValueState const & state, unsigned,
                                           rep::DisplayType displayType) const {
  switch (static_cast<int>(displayType)) {
  case 1:
  case 8:
  case 17:
    return GetXYStackedPlotConversionFunctionNames(state, names);
  case 2:
  case 5:
  case 9:
  case 11:
    return GetPolarPlotConversionFunctionNames(state, names);
  case 3:
  case 6:
  case 7:
  case 10:
  case 12:
  case 13:
  case 14:
  case 15:
    return GetXYPlotConversionFunctionNames(state, names);
  case 4:
    return GetDataTableConversionFunctionNames(state, names);
  default:
    return 0;
  }
}

int BaseSimDataExtractor::GetConversionFunctionNames(ValueState const & state, val::ParameterType result,
                                                     std::vector<AString> & names) const {
  return FunctionLists(names, state).AddConversions(result);
}

int BaseSimDataExtractor::GetXYPlotConversionFunctionNames(ValueState const & state,
                                                           std::vector<AString> & names) const {
  return FunctionLists(names, state).AddForXYPlot();
}

int BaseSimDataExtractor::GetXYStackedPlotConversionFunctionNames(ValueState const & state,
                                                                  std::vector<AString> & names) const {
  return FunctionLists(names, state).AddForXYStackedPlot();
}

int BaseSimDataExtractor::GetPolarPlotConversionFunctionNames(ValueState const & state,
                                                              std::vector<AString> & names) const {
  return FunctionLists(names, state).AddForPolarPlot();
}

int BaseSimDataExtractor::GetDataTableConversionFunctionNames(ValueState const & state,
                                                              std::vector<AString> & names) const {
  return FunctionLists(names, state).AddForDataTable();
}

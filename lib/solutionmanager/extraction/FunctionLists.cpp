#include "solutionmanager/extraction/FunctionLists.h"

#include "basekit/value/Value.h"
#include "viewkit/report/ReportFunctions.h"

void FunctionLists::AddNoFunction() { m_names.push_back(rep::GetFunctionName(rep::kNoFunctionID)); }

int FunctionLists::AddConversions(val::ParameterType result) {
  Value::GetConversionFunctionNames(m_names, m_state, result);
  ValueState ofColumn = m_state;
  switch (BasicType()) {
  case val::kReal:
    ofColumn.parameterType = val::kRealArray;
    break;
  case val::kComplex:
    ofColumn.parameterType = val::kComplexArray;
    break;
  default:
    return static_cast<int>(m_names.size());
  }
  return Value::GetConversionFunctionNames(m_names, ofColumn, result);
}

int FunctionLists::AddForXYPlot() {
  if (BasicType() == val::kReal)
    AddNoFunction();
  return AddConversions(val::kReal);
}

int FunctionLists::AddForXYStackedPlot() {
  if (BasicType() == val::kReal || BasicType() == val::kComplex)
    AddNoFunction();
  return AddConversions(val::kReal);
}

int FunctionLists::AddForPolarPlot() {
  if (BasicType() != val::kReal)
    AddNoFunction();
  for (val::ParameterType const type :
       {val::kComplex, val::kMagnitudeRadians, val::kMagnitudeDegrees, val::kDecibelDegrees})
    AddConversions(type);
  return static_cast<int>(m_names.size());
}

int FunctionLists::AddForDataTable() {
  AddNoFunction();
  for (val::ParameterType const type :
       {val::kReal, val::kComplex, val::kMagnitudeRadians, val::kMagnitudeDegrees, val::kDecibelDegrees})
    AddConversions(type);
  return static_cast<int>(m_names.size());
}

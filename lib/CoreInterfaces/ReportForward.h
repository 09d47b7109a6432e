#pragma once

/// Forward declarations of report types that interfaces pass by reference or by number.

namespace rep {
enum DisplayType : int;
enum CalculationType : int;
} // namespace rep
namespace val {
enum ParameterType : int;
}

class IDesignInstance;
class IProgressMonitor;
class IReporter;
class IReporterTab;
class ISolutionPointSet;
class ITraceCopyContext;
class ITracePasteContext;
class KelvroCommand;
class IKelvroCommand;
class OutputVariable;
class ReportTypeSolutionDefinition;
class SimValue;
class SimValueContext;
class SolutionPointSet;
class SubsweepVector;
class SweepBase;
class Trace;
class TraceComponent;
class TraceDefParams;
class Value;
class ValueBase;
class Variable;
class VariableValues;

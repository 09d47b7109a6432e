#include "products/rfcircuit/product/SolveFiles.h"

#include "basekit/text/Utf8.h"
#include "desktop/product/ResultExtras.h"
#include "desktop/product/SolveJob.h"
#include "products/rfcircuit/engine/netlist/NetlistError.h"
#include "products/rfcircuit/engine/network/SParameterSolver.h"
#include "products/rfcircuit/product/NetworkData.h"
#include "products/rfcircuit/product/NodeVoltageTable.h"
#include "products/rfcircuit/product/RfSolution.h"
#include "products/rfcircuit/product/SweepPlan.h"
#include "products/rfcircuit/product/TouchstoneExport.h"

namespace rfcircuit {
namespace {

void AddTouchstone(SweepPlan const & plan, NetworkData const & data, desktop::SolveJob const & job,
                   desktop::ResultExtras & extras) {
  TouchstoneLabels labels{job.setupName + L" : " + RfSolution::kName, job.variation};
  labels.z0 = plan.files.z0;
  std::string text;
  AString error;
  if (!MakeTouchstoneText(data, labels, text, error))
    throw rf::NetlistError({}, "setup '" + text::ToUtf8(job.setupName) + "'", text::ToUtf8(error), "");
  extras.AddFile(RfSolution::kTouchstone, text::FromUtf8(text), TouchstoneExtension(data));
  // Of a flag that was never stored the answer is no.
  if (IsRenormalizing(data, labels))
    extras.AddValue(RfSolution::kRenormalized, 1);
}

void AddVoltages(SweepPlan const & plan, rf::Circuit const & circuit, desktop::SolveJob const & job,
                 desktop::ResultExtras & extras) {
  rf::SParameterSolver solver(circuit);
  NodeVoltages voltages;
  voltages.nodes.assign(circuit.NodeNames().begin() + 1, circuit.NodeNames().end());
  for (rf::Port const & port : solver.Ports())
    voltages.ports.push_back(port.number);
  for (double const frequency : plan.files.voltages) {
    voltages.frequency = frequency;
    voltages.values = solver.VoltagesAt(frequency);
    extras.AddFile(RfSolution::kNodeVoltages, frequency, NodeVoltageTable(voltages, job.setupName, job.variation));
  }
}

} // namespace

void DeliverFiles(SweepPlan const & plan, rf::Circuit const & circuit, NetworkData const & data,
                  desktop::SolveJob const & job, io::CBlock & result) {
  desktop::ResultExtras extras;
  if (plan.files.touchstone)
    AddTouchstone(plan, data, job, extras);
  if (!plan.files.voltages.empty())
    AddVoltages(plan, circuit, job, extras);
  if (data.Origin())
    extras.AddValue(RfSolution::kPasses, data.Origin()->passes);
  extras.AppendTo(result);
}

} // namespace rfcircuit

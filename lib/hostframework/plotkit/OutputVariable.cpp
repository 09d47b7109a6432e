#include "plotkit/OutputVariable.h"

OutputVariable::~OutputVariable() = default;

ValueBase * OutputVariable::CloneValueBase() const { return new OutputVariable(*this); }

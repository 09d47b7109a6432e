#include "basekit/value/ValueBase.h"

ValueMessage::~ValueMessage() = default;

ValueBase::~ValueBase() = default;

bool ValueBase::UsesVariable(Variable const &) const { return false; }

bool ValueBase::DoReceiveMsg(ValueMessage &) const { return false; }

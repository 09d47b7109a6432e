#pragma once

#include "basekit/command/KelvroDeltaState.h"
#include "basekit/text/AString.h"

#include <functional>
#include <utility>

namespace desktop {

/// Undo and redo by one routine that exchanges what is there for what is kept.
class ExchangeDelta : public KelvroDeltaState {
public:
  /// The change is made by this.
  explicit ExchangeDelta(std::function<void()> exchange) : KelvroDeltaState(true), m_exchange(std::move(exchange)) {
    m_exchange();
  }
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    m_exchange();
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    m_exchange();
  }

private:
  std::function<void()> m_exchange;
};

/// What is to be done on the way back, or on the way forth, alone: for work that must come last both ways, and so
/// stands in front of a command's other changes for undo and behind them for redo.
class OneWayDelta : public KelvroDeltaState {
public:
  enum class Way { kUndo, kRedo };
  OneWayDelta(Way way, std::function<void()> work) : KelvroDeltaState(true), m_way(way), m_work(std::move(work)) {}
  void UndoIt() override {
    KelvroDeltaState::UndoIt();
    if (m_way == Way::kUndo)
      m_work();
  }
  void RedoIt() override {
    KelvroDeltaState::RedoIt();
    if (m_way == Way::kRedo)
      m_work();
  }

private:
  Way m_way;
  std::function<void()> m_work;
};

/// Where a delta tells that it could not do its work, as undo and redo give no result.
class DeltaFailure {
public:
  void Tell(AString const & text) {
    if (m_text.empty())
      m_text = text;
  }
  /// Empty when there was none; forgotten afterwards.
  AString Take() { return std::exchange(m_text, AString()); }

private:
  AString m_text;
};

} // namespace desktop

#pragma once

class BaseSolutionManager;

/// While it stands, the manager exports the one variation of this ID: its definition blocks are cut down to that.
/// One at a time for each manager, which outlives it: a second one is an assertion, and ends the first one's effect.
class ExportVariationContextObject {
public:
  ExportVariationContextObject(BaseSolutionManager const & manager, long designVariationID, bool isSavedState);
  ExportVariationContextObject(ExportVariationContextObject const &) = delete;
  ExportVariationContextObject & operator=(ExportVariationContextObject const &) = delete;
  ~ExportVariationContextObject();

private:
  BaseSolutionManager const & m_manager;
};

#pragma once

class MessageManager;

/// The desktop itself.
class IKitDesktop {
public:
  virtual ~IKitDesktop() = default;
  /// True under the reporter rewrite: report definitions live in the report setup module.
  virtual bool IsReportRewriteEnabled() const = 0;
  /// True when the design's post-processing variables join a name space for post-processing.
  virtual bool UsesPostProcessingVariables() const = 0;
  virtual MessageManager & GetMessageManager() = 0;
};

/// The running desktop, null when there is none (a library read by itself); not owned.
IKitDesktop * GetIKitDesktop();
inline IKitDesktop * GetGlobalIDesktop() { return GetIKitDesktop(); }
/// Installs the desktop and gives back the former.
IKitDesktop * SetIKitDesktop(IKitDesktop * desktop);

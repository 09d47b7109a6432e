#pragma once

/// What a command tells its listeners about one side of an edit.
class KelvroCommandInfo {
public:
  enum InfoType : int { kNoInfo = 0, kPropertyInfo = 1, kOutputVariableInfo = 2 };
  enum InfoSubType : int { kNoSubType = 0, kEditedOutputVariables = 4 };
  /// The numbers under which infos sit on a command.
  enum InfoNumber : int { kDesignProperties = 15, kProjectProperties = 16, kOutputVariables = 26 };

  KelvroCommandInfo() = default;
  KelvroCommandInfo(InfoType type, InfoSubType subType) : m_type(type), m_subType(subType) {}
  virtual ~KelvroCommandInfo();

  InfoType GetInfoType() const { return m_type; }
  InfoSubType GetInfoSubType() const { return m_subType; }

private:
  InfoType m_type = kNoInfo;
  InfoSubType m_subType = kNoSubType;
};

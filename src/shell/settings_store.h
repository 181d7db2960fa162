#pragma once

#include <string>
#include <vector>

#include "numerics/settings.h"

namespace orv {

// The settings of a user as a file in his configuration folder.
class FileSettings : public MemorySettings {
 public:
  // Reads the file "settings.json" of the folder; a missing one is an empty store. A damaged one is an empty store too,
  // `warning` then tells, and the damaged file is kept beside the new one with ".damaged" behind its name.
  FileSettings(std::string folder, std::string& warning);

  // Stores at once. Failure 75 when the folder cannot be written.
  void Write(const std::string& section, const std::string& key, const std::string& value) override;
  // The file is written once, or not at all when nothing is new. On failure all texts keep what they were.
  void WriteAll(const std::vector<StoredText>& texts) override;

  // The folder of the trace file and the plot files, with a trailing separator: the stored directory, where "C:\" means
  // the settings' own folder. It is stored again at once.
  std::string OutputFolder();

  const std::string& folder() const { return folder_; }

  // The user's configuration folder of this program.
  static std::string UserFolder();

 private:
  void Load(std::string& warning);
  void Save() const;

  std::string folder_;
};

}  // namespace orv

#include "shell/settings_store.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>

#include "numerics/failure.h"
#include "numerics/paths.h"
#include "numerics/text.h"
#include "support/workbook_writer.h"

namespace orv {
namespace {

namespace fs = std::filesystem;

struct StoreTest : ::testing::Test {
  std::string folderName() const { return TextOf(folder.path() / "settings"); }
  fs::path file() const { return folder.path() / "settings" / "settings.json"; }
  FileSettings Open() { return FileSettings(folderName(), warning); }
  void WriteFile(const std::string& bytes) {
    fs::create_directories(folder.path() / "settings");
    folder.Write("settings/settings.json", bytes);
  }
  std::string Bytes() const {
    std::ifstream in(file(), std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
  }
  testing::TemporaryFolder folder;
  std::string warning;
};

TEST_F(StoreTest, IsEmptyForANewUser) {
  const FileSettings settings = Open();
  EXPECT_EQ(warning, "");
  EXPECT_EQ(settings.Read("Use", "Set00.00", "0"), "0");
  EXPECT_EQ(ReadSetting(settings, "UseOrv", "PlotsUsedLastSelected"), "13");
  EXPECT_FALSE(fs::exists(file())) << "reading stores nothing";
  Options options;
  EXPECT_FALSE(LoadOptions(settings, options));
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(StoreTest, KeepsTextsFromOneStartToTheNext) {
  struct Row {
    const char* section;
    const char* key;
    const char* value;
  };
  const Row rows[] = {{"Use", "Setstr02.00", "MAX"},
                      {"UseOrv", "LastRun", "19"},
                      {"UseOrv", "Setstr02.00", "another section"},
                      {"Use", "SetDirBMP", "C:\\images \"new\"\\\xC3\xA9t\xC3\xA9"},
                      {"UseOrv", "PlotsUsedDirective", ""},
                      {"User", "a key with \xE2\x82\xAC", "line\r\nbreak\ttab"}};
  {
    FileSettings settings = Open();
    for (const Row& row : rows) settings.Write(row.section, row.key, row.value);
  }
  const FileSettings settings = Open();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    EXPECT_EQ(settings.Read(row.section, row.key, "default"), row.value);
  }
  EXPECT_EQ(warning, "");
}

TEST_F(StoreTest, StoresAtOnce) {
  FileSettings settings = Open();
  settings.Write("UseOrv", "LastRun", "19");
  EXPECT_EQ(Open().Read("UseOrv", "LastRun", ""), "19");
  settings.Write("UseOrv", "LastRun", "13");
  EXPECT_EQ(Open().Read("UseOrv", "LastRun", ""), "13");
}

TEST_F(StoreTest, KeepsTheOptions) {
  Options options;
  options.ColourOfAxis = {1, 2, 3};
  options.Interactive = 1;
  {
    FileSettings settings = Open();
    SaveOptions(settings, options);
  }
  Options loaded;
  EXPECT_TRUE(LoadOptions(Open(), loaded));
  EXPECT_EQ(loaded, options);
}

TEST_F(StoreTest, WritesManyTextsInOneGo) {
  FileSettings settings = Open();
  settings.WriteAll({{"Use", "a", "1"}, {"UseOrv", "b", "2"}, {"Use", "a", "3"}});
  EXPECT_EQ(Open().Read("Use", "a", ""), "3");
  EXPECT_EQ(Open().Read("UseOrv", "b", ""), "2");
  fs::remove(file());
  settings.WriteAll({{"Use", "a", "3"}, {"UseOrv", "b", "2"}});
  EXPECT_FALSE(fs::exists(file())) << "nothing is new";
  settings.WriteAll({{"Use", "a", "3"}, {"UseOrv", "b", ""}});
  EXPECT_EQ(Open().Read("UseOrv", "b", "absent"), "");
  EXPECT_EQ(Open().Read("Use", "a", ""), "3");
}

TEST_F(StoreTest, ManyTextsThatCannotBeStoredAllKeepWhatTheyWere) {
  FileSettings settings = Open();
  settings.Write("Use", "a", "old");
  fs::remove_all(folder.path() / "settings");
  folder.Write("settings", "in the way");
  EXPECT_THROW(settings.WriteAll({{"Use", "a", "new"}, {"Use", "b", "new"}}), RuntimeFailure);
  EXPECT_EQ(settings.Read("Use", "a", ""), "old");
  EXPECT_EQ(settings.Read("Use", "b", "absent"), "absent");
}

TEST_F(StoreTest, SetsADamagedFileAside) {
  for (const std::string& bytes :
       {std::string("{\"Use\": {\"a\": "), std::string("[1, 2]"), std::string("\xFF\xFE"), std::string("12"),
        std::string("{} {}"), std::string(1 << 20, '['), std::string("\0\0\0", 3), std::string((4 << 20) + 1, ' ')}) {
    SCOPED_TRACE(bytes.substr(0, 12) + " of " + std::to_string(bytes.size()) + " bytes");
    WriteFile(bytes);
    warning.clear();
    FileSettings settings = Open();
    EXPECT_TRUE(Contains(warning, TextOf(file()))) << warning;
    EXPECT_EQ(settings.Read("Use", "a", "default"), "default");
    EXPECT_TRUE(fs::exists(PathOf(TextOf(file()) + ".damaged")));
    EXPECT_FALSE(fs::exists(file()));
    settings.Write("Use", "a", "new");
    EXPECT_EQ(Open().Read("Use", "a", ""), "new");
    fs::remove_all(folder.path() / "settings");
  }
}

TEST_F(StoreTest, TakesTextsAlone) {
  WriteFile("{\"Use\": {\"a\": 1, \"b\": \"text\", \"c\": null, \"d\": {\"e\": \"f\"}}, \"x\": 5, \"\": {\"\": \"\"}}");
  const FileSettings settings = Open();
  EXPECT_EQ(warning, "");
  EXPECT_EQ(settings.Read("Use", "a", "default"), "default");
  EXPECT_EQ(settings.Read("Use", "b", "default"), "text");
  EXPECT_EQ(settings.Read("Use", "c", "default"), "default");
  EXPECT_EQ(settings.Read("Use", "d", "default"), "default");
}

TEST_F(StoreTest, SurvivesTextsThatAreNoUtf8) {
  FileSettings settings = Open();
  EXPECT_NO_THROW(settings.Write("Use", "SetDirBMP", "\xE9t\xE9\xFF"));
  EXPECT_NO_THROW(settings.Write("Use", "long", std::string(1 << 20, 'x')));
  EXPECT_NO_THROW(settings.Write("Use", "after", "1"));
  EXPECT_EQ(Open().Read("Use", "after", ""), "1");
}

// A file stands where the folder should be.
TEST_F(StoreTest, RaisesWhenItCannotBeWritten) {
  folder.Write("settings", "in the way");
  FileSettings settings = Open();
  EXPECT_EQ(warning, "");
  int failure = 0;
  try {
    settings.Write("UseOrv", "LastRun", "19");
  } catch (const RuntimeFailure& raised) {
    failure = static_cast<int>(raised.number());
  }
  EXPECT_EQ(failure, 75);
}

TEST_F(StoreTest, StoresAgainWhatCouldNotBeStored) {
  folder.Write("settings", "in the way");
  FileSettings settings = Open();
  EXPECT_THROW(settings.Write("UseOrv", "LastRun", "19"), RuntimeFailure);
  fs::remove(folder.path() / "settings");
  settings.Write("UseOrv", "LastRun", "19");
  EXPECT_EQ(Open().Read("UseOrv", "LastRun", "absent"), "19");
}

TEST_F(StoreTest, GivesTheDataFolder) {
  FileSettings settings = Open();
  const std::string expected = folderName() + "/";
  EXPECT_EQ(settings.OutputFolder(), expected);
  EXPECT_TRUE(fs::is_directory(folder.path() / "settings"));
  EXPECT_EQ(Open().Read("SettingsDirs", "directory", ""), expected) << "it is stored at once";
  settings.Write("SettingsDirs", "directory", "C:\\");
  EXPECT_EQ(settings.OutputFolder(), expected);
}

TEST_F(StoreTest, AddsTheSeparatorToTheDataFolder) {
  const std::string data = TextOf(folder.path() / "data");
  fs::create_directory(folder.path() / "data");
  FileSettings settings = Open();
  for (const std::string& stored : {data, data + "/"}) {
    settings.Write("SettingsDirs", "directory", stored);
    EXPECT_EQ(settings.OutputFolder(), data + "/");
    EXPECT_EQ(Open().Read("SettingsDirs", "directory", ""), data + "/");
  }
}

// A folder on a drive that is not there for the moment stays the user's choice.
TEST_F(StoreTest, KeepsADataFolderThatIsAway) {
  const std::string away = TextOf(folder.path() / "away") + "/";
  FileSettings settings = Open();
  settings.Write("SettingsDirs", "directory", away);
  settings.OutputFolder();
  EXPECT_EQ(Open().Read("SettingsDirs", "directory", ""), away);
}

// Sets a variable of the environment for a while.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    if (old != nullptr) old_ = old;
    if (value != nullptr) {
      setenv(name, value, 1);
    } else {
      unsetenv(name);
    }
  }
  ~Variable() {
    if (old_) {
      setenv(name_, old_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> old_;
};

TEST(UserFolder, FollowsTheEnvironment) {
  const Variable appData("APPDATA", nullptr);
  const Variable home("HOME", "/home/someone");
  {
    const Variable configured("XDG_CONFIG_HOME", "/config");
    EXPECT_EQ(FileSettings::UserFolder(), "/config/orvvalis");
  }
  for (const char* useless : {"", "relative"}) {
    const Variable configured("XDG_CONFIG_HOME", useless);
    EXPECT_EQ(FileSettings::UserFolder(), "/home/someone/.config/orvvalis");
  }
  const Variable configured("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(FileSettings::UserFolder(), "/home/someone/.config/orvvalis");
  const Variable nowhere("HOME", nullptr);
  EXPECT_FALSE(FileSettings::UserFolder().empty());
}

}  // namespace
}  // namespace orv

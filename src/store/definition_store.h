// SPDX-License-Identifier: MIT
#pragma once
// The user's abbreviation definitions: the files of the index/Define folder. Each file holds
// lines "short form<TAB>expansion" in internal text; a line is cut at its first tab, lines
// without a tab are ignored, and "\n" or "\r\n" ends a line. Short forms are compared without
// regard to case ("tp" finds "TP"). Lookups come from the speaking thread and edits from the
// host's (the definition editor), so every access takes the store's lock.
#include <filesystem>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/store_result.h"
#include "text/word_stores.h"

namespace vntts {

struct Definition {
  std::string short_form;
  std::string expansion;
  bool operator==(const Definition&) const = default;
};

// The file of the Define folder that receives definitions added through the store.
inline constexpr std::string_view kUserDefinitionFile = "user.def";

// Lines of one definition file, in order.
std::vector<Definition> ParseDefinitionLines(std::string_view bytes);
std::string FormatDefinitionLines(const std::vector<Definition>& definitions);

// The entries of a folder as a directory listing shows them: "." and ".." first, then the
// names in ascending byte order. A caller that skips the first two entries skips just those.
std::vector<std::string> ListFolderEntries(const std::filesystem::path& folder);

class DefinitionStore final : public DefinitionLookup {
public:
  // Reads every regular file of the folder, in name order. A file that cannot be read is named
  // in the error, and the definitions of the other files are still loaded. A missing folder is
  // an error and leaves the store empty; Add creates the folder.
  StoreResult LoadFolder(const std::filesystem::path& folder);

  // The expansion of the first definition, in file-name and line order, whose short form
  // equals the token without regard to case.
  std::optional<std::string> FindDefinition(std::string_view token) const override;
  bool Contains(std::string_view short_form) const;
  std::vector<Definition> All() const;
  std::size_t size() const;

  // Appends the pair to the user file of the folder (created when missing) and saves that file
  // atomically. An existing definition of the same short form stays; remove it first to
  // replace it.
  StoreResult Add(std::string_view short_form, std::string_view expansion);
  // Removes every definition of the short form (any case) and rewrites the files that held
  // one. False with no error text when nothing matched.
  StoreResult Remove(std::string_view short_form);

private:
  struct Entry {
    Definition definition;
    std::string key;  // lower-cased short form
    std::string file; // name within the folder
  };
  // Rewrites one file of the folder without the lines of one short form; lock held.
  StoreResult RewriteWithout(const std::string& file, const std::string& key) const;
  // The speaking thread asks once per word of the text, so lookups go through an index of the
  // first entry of each key rather than a scan of every definition; lock held.
  void RebuildIndex();

  struct KeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const {
      return std::hash<std::string_view>{}(key);
    }
  };

  mutable std::shared_mutex mutex_;
  std::filesystem::path folder_;
  std::vector<Entry> entries_;
  std::unordered_map<std::string, std::size_t, KeyHash, std::equal_to<>> first_entry_of_key_;
};

} // namespace vntts

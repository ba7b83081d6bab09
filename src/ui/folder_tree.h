// SPDX-License-Identifier: MIT
#pragma once
// The folder tree of the Create data page: the root of the file system and the user's home
// folder at the top, each folder's sub-folders listed the first time it is opened, and an
// expansion button on every folder that has sub-folders. A folder's path is its parent's path
// and its name, ending in "/".
#include <map>
#include <string>
#include <vector>

#include "ui/dialog_view.h"

namespace vntts::ui {

class FolderTree {
public:
  FolderTree(DialogView& view, int tree_id) : view_(view), tree_(tree_id) {}

  // The top items: "/" and, when given, the home folder.
  void Fill(const std::string& home);
  // Lists the item's sub-folders, once.
  void OnExpanding(int item);
  // The path of the selected folder, ending in "/"; empty when none is selected.
  std::string SelectedPath() const;

private:
  struct Folder {
    std::string path;
    bool listed = false;
  };
  int Insert(int parent, const std::string& label, const std::string& path);

  DialogView& view_;
  int tree_;
  std::map<int, Folder> folders_;
};

// The names of a folder's sub-folders (not "." and ".."; links to folders count), in the order
// a person reads them: without regard to case, then byte by byte.
std::vector<std::string> SubFolders(const std::string& folder);
bool HasSubFolder(const std::string& folder);

} // namespace vntts::ui

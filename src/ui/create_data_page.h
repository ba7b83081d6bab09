// SPDX-License-Identifier: MIT
#pragma once
// The Create data page of the Tools sheet: builds a voice from a folder of recordings. The
// folder tree and the type box fill the list with the folder's matching files (lower-cased,
// sorted by full name); Create writes the three archive files from the list through the
// archive writer. A recording that cannot be read ends the process with status 1, as the tool
// has always done: its half-written archive must not pass for a voice.
#include <filesystem>
#include <map>
#include <string>

#include "audio/archive/recording_list.h"
#include "audio/archive/sorted_name_set.h"
#include "ui/desktop.h"
#include "ui/dialog_view.h"
#include "ui/folder_tree.h"

namespace vntts::ui {

class CCreateDataPage {
public:
  // home: the second top folder of the tree (empty: only "/").
  CCreateDataPage(DialogView& view, Desktop& desktop, std::string home);

  bool OnInitDialog();
  // A change of the type or of the tree's selection.
  void FillFileList();
  void OnTreeExpanding(int item);
  void OnCreateData();
  // The handlers of the two buttons the page never shows.
  void OnAddFolder();
  void OnAddFiles();

  const std::string& folder_path() const { return folderPath; }

private:
  // The list's entries as the archive writer takes them: the files of the last folder listed
  // are found under their names on disk, any other entry under folderPath.
  std::vector<ListedRecording> ListedEntries() const;
  // Empties the list box and lists fileNames, each name followed by ".mp3".
  void ShowFileNames(bool empty_first);

  DialogView& view_;
  Desktop& desktop_;
  FolderTree tree_;
  std::string home_;
  std::string folderPath; // ends in "/"
  SortedNameSet fileNames;
  // The list as the tree and type box last filled it, by the text each entry shows.
  std::map<std::u16string, ListedRecording> listed_;
};

} // namespace vntts::ui

import QtQuick
import Talvo.Views

// Components written in place know the ids around them; the formatter of this Qt version cannot write
// the pragma that would tell the linter so.
// qmllint disable unqualified

/// A reply, or a very long text, in the theme's looks.
///
/// Give it the width that is there; `naturalWidth` is what the text needs of it.
MarkdownBlockStack {
    id: view

    spacing: view.literal ? 0 : 10
    looks: Theme.messageLooks

    tableView: MarkdownTableView {
    }
    divider: MarkdownDivider {
    }
    more: MarkdownMore {
        onAsked: view.showMore()
    }
}

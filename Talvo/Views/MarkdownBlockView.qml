import QtQuick
import Qt.labs.qmlmodels
import Talvo.Views

/// Chooses how a block is drawn, by its kind: the delegate of a view on MarkdownBlocks. Being a
/// chooser and no item, it adds nothing to the thousands of blocks of a long conversation.
DelegateChooser {
    role: "kind"

    DelegateChoice {
        roleValue: "paragraph"

        MarkdownText {
        }
    }

    DelegateChoice {
        roleValue: "heading"

        MarkdownHeading {
        }
    }

    DelegateChoice {
        roleValue: "item"

        MarkdownItem {
        }
    }

    DelegateChoice {
        roleValue: "table"

        MarkdownTableView {
        }
    }

    DelegateChoice {
        roleValue: "divider"

        MarkdownDivider {
        }
    }

    DelegateChoice {
        roleValue: "plain"

        MarkdownSource {
        }
    }

    DelegateChoice {
        roleValue: "more"

        MarkdownMore {
        }
    }
}

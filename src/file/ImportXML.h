// Reads a configuration file.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "model/Document.h"

/// Receives what is read from a file and the faults in it, each with its line. The base class of
/// those who need lines or handle the faults themselves:
///
///     MyListener listener;  // derived from ReadingListener
///     ImportXML("/house.xml", document, disk, desktop, [] {}, [] { return true; }, &listener);
///     listener.linesOfItems();
class ReadingListener {
 public:
    virtual ~ReadingListener() = default;

    /// A device, branch or item was added to the document. Its element begins in that line.
    virtual void read(const Node& node, std::size_t line) = 0;
    /// An element has a fault. `parent` is the device or branch that contains the element, or null
    /// if neither does. `line` is where the element begins, or 0 if that is not known.
    virtual void fault(const std::string& message, const Node* parent, std::size_t line) = 0;
};

/// Reads the configuration file at `path` into the document. The document's tree must contain only
/// the root, and its registries must be empty.
///
/// A device, branch or item with a fault is skipped and reported with the general error message;
/// reading continues, so the configuration can be incomplete. After the file is read, the user sees
/// the first five of these messages, and one more with the number of the others.
///
/// `itemRead` is called after every item. Pending events are processed again and again, at times
/// that the clock sets; then `goesOn` is called: if it returns false, the reading ends without a
/// message.
///
/// Returns false if nothing was read: `goesOn` ended the reading; or, after a message to the user,
/// the file cannot be read, is not XML, has another root element, or would take more memory than
/// any configuration needs.
///
/// If there is a `listener`, it receives all faults instead of the user.
bool ImportXML(
    const std::string& path, Document& document, Disk& disk, Desktop& desktop,
    const std::function<void()>& itemRead,
    const std::function<bool()>& goesOn = [] { return true; }, ReadingListener* listener = nullptr);

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/property_list.h"

namespace tavelle {

/// An XML list that holds this; a dictionary that holds this.
std::string xml(const std::string& content);
std::string dict(const std::string& content);
std::string repeated(const std::string& what, int times);

/// An XML list of dictionaries in each other along this path, "Spaces/one/Default", with the value at its end.
std::string storeWith(const std::string& path, const std::string& value);

/// A value as XML on one line, without the list around it.
std::string onOneLine(plist_t node);

/// Data that hold this list, as XML.
std::string packed(const std::string& list);

/// A store's entry that shows the image at this address, with these items beside its choices.
std::string entryShowing(const std::string& address, const std::string& items = "");

/// A number as binary lists hold it, its highest byte first.
std::string bigEndian(std::uint64_t value, int bytes);

/// A binary list of these objects, the first of which is its root. References take two bytes.
std::string binaryTable(const std::vector<std::string>& objects);

}  // namespace tavelle

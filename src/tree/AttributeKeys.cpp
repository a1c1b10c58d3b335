#include <quire/tree/AttributeKeys.h>

namespace Quire {

const char *const Attr_Queue = "_queue";
const char *const Attr_Fields = "_fields";
const char *const Attr_Header = "_header";
const char *const Attr_Storyid = "_storyid";
const char *const Attr_Headerid = "_headerid";
const char *const Attr_Wire = "_wire";
const char *const Attr_Mail = "_mail";
const char *const Attr_Words = "_words";
const char *const Attr_Rate = "_rate";
const char *const Attr_Break = "_break";
const char *const Attr_Float = "_float";
const char *const Attr_Hold = "_hold";
const char *const Attr_Lock = "_lock";
const char *const Attr_Indexed = "_indexed";
const char *const Attr_NumItems = "_count";
const char *const Attr_ConfirmEdit = "_confirm_edit";
const char *const Attr_Inverted = "_inverted";
const char *const Attr_Sorted = "_sorted";

} // namespace Quire

#pragma once

/// \file
/// Everything of namespace Quire: the object model of a newsroom server.

#include <quire/orvex/Orvex.h>

#include <quire/forms/AttributeCodec.h>
#include <quire/forms/Field.h>
#include <quire/forms/FormCache.h>
#include <quire/forms/FormData.h>
#include <quire/notify/Notification.h>
#include <quire/notify/Search.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/DispatchCache.h>
#include <quire/session/DispatchWrapper.h>
#include <quire/session/ErrorString.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/session/ServerTime.h>
#include <quire/session/StoryID.h>
#include <quire/session/UserInfo.h>
#include <quire/story/LocalStory.h>
#include <quire/story/Story.h>
#include <quire/tree/Attribute.h>
#include <quire/tree/AttributeKeys.h>
#include <quire/tree/Directory.h>
#include <quire/tree/Item.h>
#include <quire/tree/ItemList.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/Queue.h>
#include <quire/tree/QueueUpdateMgr.h>
#include <quire/tree/SearchList.h>

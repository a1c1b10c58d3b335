#pragma once

/// \file
/// The stand-in newsroom server, for the tests of programs that work with a newsroom: see Newsroom::Model for the
/// newsroom itself, Newsroom::NewsroomText for writing one down, Newsroom::sampleModel() for one that is there,
/// Newsroom::Store for one that is kept in a folder, and Newsroom::Server for putting any of them behind the server's
/// interfaces, recording calls, injecting faults and counting what is alive.

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/model/NewsroomText.h>
#include <quire/newsroom/sample/Generated.h>
#include <quire/newsroom/sample/Sample.h>
#include <quire/newsroom/server/Delivery.h>
#include <quire/newsroom/server/Server.h>
#include <quire/newsroom/store/Importer.h>
#include <quire/newsroom/store/Store.h>

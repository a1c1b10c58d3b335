#pragma once

/// \file
/// The stand-in newsroom server, for the tests of programs that work with a newsroom: see Newsroom::Model for the
/// newsroom itself, Newsroom::NewsroomText for writing one down, Newsroom::sampleModel() for one that is there, and
/// Newsroom::Server for putting it behind the server's interfaces, recording calls, injecting faults and counting what
/// is alive.

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/model/NewsroomText.h>
#include <quire/newsroom/sample/Sample.h>
#include <quire/newsroom/server/Delivery.h>
#include <quire/newsroom/server/Server.h>

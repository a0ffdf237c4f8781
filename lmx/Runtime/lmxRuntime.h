#pragma once

/// Everything that a host may use of this room: exceptions, events, lists, numbers and texts.

#include <lmx/Runtime/lmxAnchors.h>
#include <lmx/Runtime/lmxBorrowed.h>
#include <lmx/Runtime/lmxCores.h>
#include <lmx/Runtime/lmxDictionary.h>
#include <lmx/Runtime/lmxEvent.h>
#include <lmx/Runtime/lmxEventList.h>
#include <lmx/Runtime/lmxExceptions.h>
#include <lmx/Runtime/lmxExport.h>
#include <lmx/Runtime/lmxExtended.h>
#include <lmx/Runtime/lmxFormat.h>
#include <lmx/Runtime/lmxFormatSettings.h>
#include <lmx/Runtime/lmxGeometry.h>
#include <lmx/Runtime/lmxLifetime.h>
#include <lmx/Runtime/lmxNullable.h>
#include <lmx/Runtime/lmxNumberText.h>
#include <lmx/Runtime/lmxObjectList.h>
#include <lmx/Runtime/lmxSet.h>
#include <lmx/Runtime/lmxText.h>
#include <lmx/Runtime/lmxTextForms.h>
#include <lmx/Runtime/lmxTextStreams.h>
#include <lmx/Runtime/lmxThread.h>
#include <lmx/Runtime/lmxThreadPool.h>
#include <lmx/Runtime/lmxValueList.h>
#include <lmx/Runtime/lmxWeakReference.h>
#include <lmx/Runtime/lmxXml.h>

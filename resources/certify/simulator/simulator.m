#include <math.h>
#include <setjmp.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#if __has_include(<AppKit/AppKit.h>)
#define PLAYS_MAC
#import "mobile_names.h"
#else
#import <UIKit/UIKit.h>
#import "LFTPuppetView.h"
#import "LFTRecordableView.h"
#endif
#import <AVFoundation/AVFoundation.h>

#import "runtime.m"
#import "foundation.m"
#import "geometry.m"
#import "layers.m"
#import "views.m"
#import "player.m"

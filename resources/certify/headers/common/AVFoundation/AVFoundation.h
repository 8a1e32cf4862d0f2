#pragma once

#import <Foundation/Foundation.h>

extern const CFTimeInterval AVCoreAnimationBeginTimeAtZero;

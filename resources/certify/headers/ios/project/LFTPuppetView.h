#pragma once

#import <UIKit/UIKit.h>

@interface LFTPuppetView : UIView
@property (strong, nonatomic) NSDictionary *layersByName;
@property (strong, nonatomic) NSDictionary *viewsByName;
@end

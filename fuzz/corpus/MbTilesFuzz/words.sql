CREATE TABLE metadata (name text, value text);
CREATE TABLE tiles (zoom_level integer, tile_column integer, tile_row integer, tile_data blob);
INSERT INTO metadata VALUES ('minzoom','-1'),('maxzoom','99999999999'),('attribution',x'ff00'),('name','<b>'),('format','pbf');
INSERT INTO tiles VALUES ('a',NULL,1.5,'x');

CREATE VIEW tiles AS SELECT * FROM metadata;
CREATE VIEW metadata AS SELECT zoom_level AS name, tile_data AS value FROM tiles;
